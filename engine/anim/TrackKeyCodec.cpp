#include "anim/TrackKeyCodec.h"

#include <charconv>
#include <string>

#include "anim/TrackReader.h"
#include "anim/TrackTypes.h"
#include "io/Package.h"

namespace {

// Returns whether the record is an array or a row of exactly count entries, else records why.
bool expect(TrackReader& reader, const Package* record, int count, const char* layout)
{
    if ((record->isArray() && record->getNumChildren() == count) || record->getNumNumbers() == count)
        return true;
    reader.fail(record, std::string("a key record must be ") + layout);
    return false;
}

bool readKeyType(TrackReader& reader, const TrackField& field, int& type)
{
    if (!reader.readInt(field, type, "key type"))
        return false;
    if (type < 0 || type >= TRACK_KEY_TYPE_COUNT) {
        reader.fail(field, "key type " + std::to_string(type) + " is not 0 to 4");
        return false;
    }
    return true;
}

bool readTangents(TrackReader& reader, const Package* record, int first, vec4& tangents)
{
    bool ok = true;
    for (int i = 0; i < 4; ++i)
        ok = reader.readFloat({record, first + i}, tangents[i], "tangent") && ok;
    return ok;
}

void writeTangents(Package* record, const vec4& tangents)
{
    for (int i = 0; i < 4; ++i)
        record->addDouble(nullptr, TrackKeyCodec::widen(tangents[i]));
}

} // namespace

double TrackKeyCodec::widen(float value)
{
    char text[32];
    auto end = std::to_chars(text, text + sizeof(text), value).ptr;
    double wide = value;
    std::from_chars(text, end, wide);
    return wide;
}

bool TrackKeyCodec::read(TrackReader& reader, const Package* record, TrackKeyToggle& key)
{
    if (!expect(reader, record, 2, "[time, 0 or 1]"))
        return false;
    int value = 0;
    if (!reader.readTime({record, 0}, key.time) || !reader.readInt({record, 1}, value, "value"))
        return false;
    if (value != 0 && value != 1) {
        reader.fail({record, 1}, "a toggle value must be 0 or 1");
        return false;
    }
    key.value = value != 0;
    return true;
}

bool TrackKeyCodec::read(TrackReader& reader, const Package* record, TrackKeyFloat& key)
{
    if (!expect(reader, record, 7, "[time, value, in_dt, in_dv, out_dt, out_dv, key type]"))
        return false;
    bool ok = reader.readTime({record, 0}, key.time);
    ok = reader.readFloat({record, 1}, key.value, "value") && ok;
    ok = readTangents(reader, record, 2, key.tangents) && ok;
    return readKeyType(reader, {record, 6}, key.type) && ok;
}

bool TrackKeyCodec::read(TrackReader& reader, const Package* record, TrackKeyDouble& key)
{
    if (!expect(reader, record, 7, "[time, value, in_dt, in_dv, out_dt, out_dv, key type]"))
        return false;
    bool ok = reader.readTime({record, 0}, key.time);
    ok = reader.readNumber({record, 1}, key.value, "value") && ok;
    ok = readTangents(reader, record, 2, key.tangents) && ok;
    return readKeyType(reader, {record, 6}, key.type) && ok;
}

bool TrackKeyCodec::read(TrackReader& reader, const Package* record, TrackKeyColor& key)
{
    if (!expect(reader, record, 5, "[time, red, green, blue, alpha]"))
        return false;
    bool ok = reader.readTime({record, 0}, key.time);
    for (int i = 0; i < 4; ++i)
        ok = reader.readFloat({record, 1 + i}, key.value[i], "colour channel") && ok;
    return ok;
}

bool TrackKeyCodec::read(TrackReader& reader, const Package* record, TrackKeyString& key)
{
    if (!expect(reader, record, 2, "[time, \"text\"]"))
        return false;
    const char* text = "";
    int length = 0;
    if (!reader.readTime({record, 0}, key.time) || !reader.readString({record, 1}, text, length, "text"))
        return false;
    key.value = jString(text, length);
    return true;
}

void TrackKeyCodec::write(Package* array, const TrackKeyToggle& key)
{
    Package* record = array->addArray(nullptr);
    record->addDouble(nullptr, widen(key.time));
    record->addInt(nullptr, key.value ? 1 : 0);
}

void TrackKeyCodec::write(Package* array, const TrackKeyFloat& key)
{
    Package* record = array->addArray(nullptr);
    record->addDouble(nullptr, widen(key.time));
    record->addDouble(nullptr, widen(key.value));
    writeTangents(record, key.tangents);
    record->addInt(nullptr, key.type);
}

void TrackKeyCodec::write(Package* array, const TrackKeyDouble& key)
{
    Package* record = array->addArray(nullptr);
    record->addDouble(nullptr, widen(key.time));
    record->addDouble(nullptr, key.value);
    writeTangents(record, key.tangents);
    record->addInt(nullptr, key.type);
}

void TrackKeyCodec::write(Package* array, const TrackKeyColor& key)
{
    Package* record = array->addArray(nullptr);
    record->addDouble(nullptr, widen(key.time));
    for (int i = 0; i < 4; ++i)
        record->addDouble(nullptr, widen(key.value[i]));
}

void TrackKeyCodec::write(Package* array, const TrackKeyString& key)
{
    Package* record = array->addArray(nullptr);
    record->addDouble(nullptr, widen(key.time));
    record->add()->setString(key.value.c_str(), key.value.length());
}
