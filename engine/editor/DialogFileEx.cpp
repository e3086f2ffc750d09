#include "editor/DialogFileEx.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

#include "editor/Locale.h"

namespace {

// ".anim;.json" becomes "*.anim *.json"; an empty filter offers every file.
QString name_filter(const jString& filter)
{
    QStringList patterns;
    for (const QString& ext : QString::fromUtf8(filter.c_str()).split(';', Qt::SkipEmptyParts))
        patterns << (ext.startsWith('.') ? "*" + ext.trimmed() : ext.trimmed());
    if (patterns.isEmpty())
        return QString::fromUtf8(tr("all_files")) + " (*)";
    return patterns.join(' ') + " (" + patterns.join(' ') + ")";
}

} // namespace

DialogFileEx::DialogFileEx(UIRoot* app, const char* title, bool save) : DialogFile(app, title, save) {}

bool DialogFileEx::run_dialog(jString& path)
{
    QFileDialog dialog(QApplication::activeWindow(), QString::fromUtf8(getTitle().c_str()));
    // The toolkit's own dialog keeps the editor's dark style on every desktop.
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    dialog.setAcceptMode(isSave() ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(isSave() ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilter(name_filter(getFilter()));
    QFileInfo start(QString::fromUtf8(getCurrentPath().c_str()));
    if (start.isDir())
        dialog.setDirectory(start.absoluteFilePath());
    else if (!getCurrentPath().empty())
        dialog.selectFile(start.absoluteFilePath());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    path = dialog.selectedFiles().first().toUtf8().constData();
    return true;
}
