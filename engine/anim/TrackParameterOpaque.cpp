#include "anim/TrackParameterOpaque.h"

#include "anim/TrackReader.h"

int TrackParameterOpaque::getNumKeys() const
{
    const Package* keys = m_data.isObject() ? m_data.find("keys") : nullptr;
    return keys && keys->isArray() ? keys->getNumChildren() : 0;
}

void TrackParameterOpaque::release()
{
    m_data.clear();
}

void TrackParameterOpaque::read(TrackReader& reader, const Package* object)
{
    TrackParameter::read(reader, object);
    m_data.clear();
    Copy(object, &m_data);
}

void TrackParameterOpaque::write(Package* object) const
{
    if (!m_data.isObject()) { // made in memory rather than read: only the common fields exist
        TrackParameter::write(object);
        return;
    }
    Copy(&m_data, object);
}

void TrackParameterOpaque::readBody(TrackReader&, const Package*) {}

void TrackParameterOpaque::writeBody(Package*) const {}

void TrackParameterOpaque::apply(float) {}

void TrackParameterOpaque::Copy(const Package* from, Package* to)
{
    switch (from->getType()) {
    case Package::NUL:
        to->setNull();
        break;
    case Package::BOOL:
        to->setBool(from->getBool());
        break;
    case Package::INT:
        to->setInt(from->getInt());
        break;
    case Package::DOUBLE:
        to->setDouble(from->getDouble());
        break;
    case Package::STRING:
        to->setString(from->getString(), from->getStringLength());
        break;
    case Package::NUMBERS:
        to->setArray();
        for (int i = 0; i < from->getNumNumbers(); ++i) {
            if (from->isIntegerNumber(i))
                to->addInt(nullptr, static_cast<int64_t>(from->getNumber(i)));
            else
                to->addDouble(nullptr, from->getNumber(i));
        }
        break;
    case Package::ARRAY:
    case Package::OBJECT:
        if (from->getType() == Package::ARRAY)
            to->setArray();
        else
            to->setObject();
        for (int i = 0; i < from->getNumChildren(); ++i) {
            const Package* child = from->getChild(i);
            // add() takes a zero-terminated name; member names with zero bytes are cut there.
            Copy(child, to->add(from->getType() == Package::OBJECT ? child->getName() : nullptr));
        }
        break;
    }
}
