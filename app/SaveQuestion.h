#pragma once

class QString;
class QWidget;

/// What the user wants of a save over what another program changed.
enum class HowToSave {
    EditedOnly, ///< so that the other's values stay where nobody edited them here
    All,
    NotAtAll,
};

/// Asks over `window` how the file at `path` is to be saved. The answer EditedOnly cannot be chosen where that is not
/// possible. Escape and the close button are NotAtAll.
HowToSave AskHowToSave(QWidget& window, const QString& path, bool canSaveEdited);
