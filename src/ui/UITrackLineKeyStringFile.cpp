#include "ui/UITrackLineKeyStringFile.h"

#include "data/FKeyString.h"
#include "data/FParameterStringFile.h"
#include "editor/DialogFileEx.h"
#include "editor/Locale.h"
#include "kit/jAllocator.h"
#include "kit/jKit.h"
#include "ui/UITrackLinePanel.h"

jString UITrackLineKeyStringFile::getText() const
{
    return jKit::getFileName(static_cast<const FKeyString*>(getKey())->getValue());
}

void UITrackLineKeyStringFile::onDClick()
{
    UITrackLinePanel* panel = UITrackLinePanel::get();
    if (!panel)
        return;
    const jString& current = static_cast<const FKeyString*>(getKey())->getValue();
    auto* dialog = jNew<DialogFileEx>("src/ui/UITrackLineKeyStringFile", __LINE__, "UITrackLineKeyStringFile::onDClick",
                                      panel->getRoot(), tr("open"), false);
    if (current.nempty())
        dialog->setCurrentPath(current.dirName().c_str());
    if (const auto* parameter = dynamic_cast<const FParameterStringFile*>(getKey()->getParameter()))
        dialog->setFilter(parameter->getFilter().c_str());
    if (dialog->modality())
        set_text(jKit::convertToLocalPath(dialog->getPath()));
    jDelete(dialog, "src/ui/UITrackLineKeyStringFile", __LINE__, "UITrackLineKeyStringFile::onDClick");
}
