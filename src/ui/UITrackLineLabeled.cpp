#include "ui/UITrackLineLabeled.h"

#include "anim/TrackParameter.h"
#include "data/FParameterSingle.h"
#include "kit/jLog.h"

jString UITrackLineLabeled::getText() const
{
    const FParameterSingle* data = getData();
    if (!data || !data->getTrackParameter())
        return jString();
    if (data->getParent()) {
        jLog::error("%s:parent not support", text_function());
        return jString();
    }
    const TrackParameter* param = data->getTrackParameter();
    if (param->getNodeID() >= 0)
        return param->getNodeName();
    if (param->isForMaterial())
        return param->getMaterialName();
    return param->getInternalNodeName();
}
