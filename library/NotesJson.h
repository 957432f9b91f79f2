#pragma once

#include "library/JsonFault.h"
#include "model/ItemNotes.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

// The notes of an item as fields of a JSON object, each left out where it says nothing:
//
//   "unit": "°C", "lowest": "150", "highest": "280.5", "comment": "…", "bits": ["Fan", "", "Steam"],
//   "texts": [{"value": "0", "text": "off"}]

/// Appends the fields of `notes` to the object that is open at the end of `json`, after one that stands there.
void AppendNotes(const ItemNotes& notes, std::string& json);

/// Appends them as an object of their own.
void AppendNotesObject(const ItemNotes& notes, std::string& json);

/// Fills `notes` from the fields of `object`, which stands at `place`; other fields are a fault. The lowest and highest
/// value may be numbers, too.
std::optional<JsonFault> NotesFromJson(const nlohmann::ordered_json& object, const std::string& place,
                                       ItemNotes& notes);
