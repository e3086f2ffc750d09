#include "ui/PickerDialog.h"

#include "editor/Locale.h"
#include "kit/jAllocator.h"
#include "ui/UIDialog.h"
#include "ui/UIWidget.h"

void runPickerDialog(UIRoot* root, UIDialog* panel, const char* titleKey, const char* tag)
{
    auto* widget = jNew<UIWidget>("src/ui/PickerDialog", __LINE__, tag, root, Widget::MakeCenter(800, 600),
                                   UI_WIDGET_DEFAULT);
    widget->setUI(panel, tr(titleKey));
    widget->setIME(false);
    widget->setForceClose(true);
    widget->setEscClose(true);
    widget->center();
    widget->modality();
    widget->release();
    jDelete(widget, "src/ui/PickerDialog", __LINE__, tag);
    panel->release();
    jDelete(panel, "src/ui/PickerDialog", __LINE__, tag);
}
