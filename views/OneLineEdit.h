#pragma once

class QLineEdit;

/// Keeps what a user enters into `edit` on one line: a line break, tab or other control character, which only a paste
/// brings, becomes a blank, and half a character beyond the Basic Multilingual Plane, left where a paste was cut at the
/// field's limit, is dropped. What the program itself sets stays as it is until the user edits it.
void KeepOnOneLine(QLineEdit& edit);
