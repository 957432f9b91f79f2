#pragma once

#include "changes/ChangeRecord.h"

#include <optional>
#include <string>

/// Appends `record` as one line of text for people, with its line feed: "RW245  row 4  Zone °C(2)  245.0 -> 240.0".
/// Control characters become escapes, so that it stays one line.
void AppendChangeText(const ChangeRecord& record, std::string& line);

/// Where the record stands, as such a line begins: "RW245  row 4  Zone °C(2)".
std::u16string PlaceText(const ChangeRecord& record);

/// One side of a value: its text, in brackets its words where there is none or `withWords` says so; "(none)" where
/// neither is there.
std::u16string SideText(const std::optional<std::u16string>& text, const WordRun& words, bool withWords);
