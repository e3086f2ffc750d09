#include "ModalAnswer.h"

#include "kit/jLog.h"
#include "ui/UIRoot.h"

ModalRoute modalRoute(UIRoot* app, const char* who, const char* title, UIAnswer& answer)
{
    UIRoot* root = app ? app : UIRoot::get();
    UIAutomation* hook = root ? root->getAutomation() : nullptr;
    if (hook && hook->takeAnswer(answer))
        return ModalRoute::Answered;
    if (!root || root->isHeadless()) {
        jLog::warning("%s:no answer queued for \"%s\" and no display to ask on; cancelled", who, title);
        return ModalRoute::Refused;
    }
    return ModalRoute::Interactive;
}
