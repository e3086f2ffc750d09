#pragma once

class UIDialog;
class UIRoot;

// Runs a picker modally in a window of its own, titled with the text of titleKey, and returns when
// it closes; the caller then reads the results the picker wrote. The picker is released and freed
// on the way out (it must come from jNew); tag names those frees in the allocation registry.
void runPickerDialog(UIRoot* root, UIDialog* panel, const char* titleKey, const char* tag);
