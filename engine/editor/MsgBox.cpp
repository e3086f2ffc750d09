#include "editor/MsgBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include "ModalAnswer.h"
#include "editor/Locale.h"

namespace {

bool ask_user(const char* text, const char* title, bool yesNo)
{
    QMessageBox box(QMessageBox::Warning, QString::fromUtf8(title), QString::fromUtf8(text), QMessageBox::NoButton,
                    QApplication::activeWindow());
    QPushButton* accept = box.addButton(QString::fromUtf8(tr(yesNo ? "Yes" : "OK")), QMessageBox::AcceptRole);
    if (yesNo)
        box.setEscapeButton(box.addButton(QString::fromUtf8(tr("No")), QMessageBox::RejectRole));
    box.setDefaultButton(accept);
    box.exec();
    return box.clickedButton() == accept;
}

} // namespace

bool msgBox(const char* text, const char* title, UIRoot* app, bool yesNo)
{
    UIAnswer answer;
    switch (modalRoute(app, "msgBox", title ? title : "", answer)) {
    case ModalRoute::Answered:
        return answer.kind == UIAnswerKind::Yes || answer.kind == UIAnswerKind::Ok;
    case ModalRoute::Refused:
        return false;
    case ModalRoute::Interactive:
        break;
    }
    return ask_user(text ? text : "", title ? title : "", yesNo);
}
