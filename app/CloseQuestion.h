#pragma once

class QWidget;

/// Asks over `window` whether unsaved work is to be saved before the program closes: true for Yes. Only the two buttons
/// answer, by mouse or keys: there is no Escape, and no closing of the box, that could drop the work by mistake.
bool AskToSave(QWidget& window);
