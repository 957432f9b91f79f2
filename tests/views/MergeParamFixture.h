#pragma once

#include "tests/support/DialogSteps.h"
#include "tests/support/PathLook.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "views/MergeParamDlg.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

inline constexpr std::size_t k128KBytes = 261'120;
inline constexpr std::size_t k256KBytes = 523'264;

/// The dialog over a folder with two files: first.rcp of ten words, second.rcp of two.
struct MergeParam : testing::Test {
    void SetUp() override;

    QString Path(const std::string& name) const { return QString::fromStdString((folder / name).string()); }
    std::string Look(const std::string& name) const { return PathLook((folder / name).string()); }
    std::string Field(const QString& name) const { return PathLook(TextIn(*dialog, name)); }
    void Type(const QString& field, const QString& text) { TypeInto(*dialog, field, text); }
    void ClickMerge() { ClickOn(*dialog, "buttonMerge"); }

    /// The text of each field by its name.
    std::map<QString, QString> Fields() const;

    /// Answers what comes up, with that title, after a click on the button.
    void Answer(const QString& button, const CModalAnswer::Action& action, const QString& title);

    void ChooseFirst(const std::string& name) { Answer("buttonFirstPath", ChoosePath(Path(name)), "Open file"); }
    void ChooseSecond(const std::string& name) { Answer("buttonSecondPath", ChoosePath(Path(name)), "Open file"); }
    void ChooseMerged(const QString& name);

    /// Words 2 to 4 of the first file to 0, word 0 of the second to 5.
    void ChooseAll();

    void ExpectStaysOpen(const std::u16string& message, const std::map<QString, QString>& fields);
    void ExpectClosedWithOk() const;

    /// A merged file of `size` bytes that begins with `bytes` and is zero after them.
    void ExpectMerged(std::size_t size, Bytes bytes) const;

    const Bytes firstBytes =
        WordBytes({0x1100, 0x1211, 0x1312, 0x1413, 0x1514, 0x1615, 0x1716, 0x1817, 0x1918, 0x1A19});
    const Bytes secondBytes = WordBytes({0x2B2A, 0x2C2B});
    const Bytes firstStretch = WordBytes({0x1312, 0x1413, 0x1514});
    const Bytes bothStretches = WordBytes({0x1312, 0x1413, 0x1514, 0, 0, 0x2B2A});
    CTempFolder folder; // its name has no capitals
    CRecordingReporter reporter;
    std::unique_ptr<CMergeParamDlg> dialog;
};
