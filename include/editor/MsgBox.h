#pragma once

class UIRoot;

// Shows text in a modal message box titled title: with Yes and No buttons when yesNo is true,
// with an OK button otherwise. Returns true when the user pressed Yes (or OK), false for No or
// when the box was closed. The automation hook answers in place of a user (Yes or OK accept, No or
// Cancel refuse); without an answer and without a display the box refuses and logs a warning.
bool msgBox(const char* text, const char* title, UIRoot* app, bool yesNo);
