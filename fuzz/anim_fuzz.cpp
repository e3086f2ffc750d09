// Feeds arbitrary bytes to the .anim reader, read as the file loaders read them. Whatever it accepts
// must write out canonically and read back to the same text; whatever it refuses must leave the
// track as it was.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "anim/Track.h"
#include "anim/TrackReader.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jLog.h"

namespace {

std::string canonical(const Track& track)
{
    Package root;
    track.save(&root);
    std::string text;
    mjl::write(&root, text);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    jLog::setStderr(false);
    mjl document;
    if (!document.parse(reinterpret_cast<const char*>(data), size, "fuzz.anim", mjl::NUMBER_ROWS))
        return 0;
    Track track;
    track.setEndTime(3.0f);
    TrackReader reader(true);
    if (!track.read(reader, document.getRoot(), nullptr)) {
        if (reader.problems().empty() || track.getNumParameters() != 0 || track.getEndTime() != 3.0f)
            std::abort(); // a refusal must say why and change nothing
        return 0;
    }
    std::string first = canonical(track);
    mjl again;
    Track reloaded;
    if (!again.parse(first.data(), first.size(), "canonical.anim", mjl::NUMBER_ROWS) || !reloaded.load(again.getRoot(), nullptr) ||
        canonical(reloaded) != first)
        std::abort();
    return 0;
}
