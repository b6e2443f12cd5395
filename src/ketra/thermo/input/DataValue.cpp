#include <ketra/thermo/input/DataValue.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

namespace {

Setting::Type settingType(int typeCode)
{
    switch (typeCode) {
    case 0:
    case 1:
        return Setting::TypeInt;
    case 2:
    case 3:
        return Setting::TypeFloat;
    case 4:
        return Setting::TypeBoolean;
    case 5:
        return Setting::TypeString;
    default:
        return Setting::TypeNone;
    }
}

} // namespace

template <class T> void DataValue<T>::read(const Setting& parent)
{
    const char* key = getName().c_str();
    if (parent.exists(key) && parent[key].getType() == settingType(typeCode))
        parent.lookupValue(key, value);
}

template <class T> void DataValue<T>::write(Setting& parent, bool all)
{
    if (!all && value == defaultValue) return; // exactly equal: every other number is a stated one

    const char* key = getName().c_str();
    const Setting::Type type = settingType(typeCode);
    // A setting keeps the type it was made with, and would convert or refuse the value.
    if (parent.exists(key) && parent[key].getType() != type) parent.remove(key);
    Setting& setting = parent.exists(key) ? parent[key] : parent.add(key, type);
    setting = value;
}

template class DataValue<double>;
template class DataValue<bool>;
template class DataValue<int>;
template class DataValue<std::string>;

} // namespace thermo::input
