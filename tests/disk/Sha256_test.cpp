#include "disk/Sha256.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

std::string ShaOf(std::string_view text)
{
    CSha256 sha;
    sha.Append(std::as_bytes(std::span(text)));
    return sha.Finish();
}

} // namespace

TEST(Sha256Of, StandardTexts)
{
    EXPECT_EQ(ShaOf(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(ShaOf("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(ShaOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(ShaOf("abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrsm"
                    "nopqrstnopqrstu"),
              "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1");
    EXPECT_EQ(ShaOf(std::string(1000000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256Of, LengthsAroundABlock) // those of sha256sum for so many letters "a"
{
    EXPECT_EQ(ShaOf(std::string(55, 'a')), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318");
    EXPECT_EQ(ShaOf(std::string(56, 'a')), "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a");
    EXPECT_EQ(ShaOf(std::string(63, 'a')), "7d3e74a05d7db15bce4ad9ec0658ea98e3f06eeecf16b4c6fff2da457ddc2f34");
    EXPECT_EQ(ShaOf(std::string(64, 'a')), "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb");
    EXPECT_EQ(ShaOf(std::string(65, 'a')), "635361c48bb9eab14198e76ea8ab7f1a41685d6ad62aa9146d301d4f17eb0ae0");
}

TEST(Sha256Of, PiecesIsThatOfTheWhole)
{
    const std::string text(150, 'x');
    const std::string whole = ShaOf(text);
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        CSha256 sha;
        const auto bytes = std::as_bytes(std::span(text));
        sha.Append(bytes.first(cut));
        sha.Append(bytes.subspan(cut));
        EXPECT_EQ(sha.Finish(), whole) << cut;
    }
}
