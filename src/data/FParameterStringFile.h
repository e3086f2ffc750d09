#pragma once

#include "data/FParameterString.h"
#include "ui/UITrackLineKeyStringFile.h"

// A string parameter naming a file; its keys are picked with a file dialog limited to the
// extension filter (".anim" for the file of a nested track).
class FParameterStringFile : public FParameterString<UITrackLineKeyStringFile> {
public:
    int getType() const override { return 8; }
    const jString& getFilter() const { return m_filter; }
    void setFilter(const jString& filter) { m_filter = filter; }

protected:
    const FParameterTags& tags() const override;

private:
    jString m_filter;
};
