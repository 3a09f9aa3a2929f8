#pragma once
#include <QMetaProperty>
#include <QVariant>
#include <gtest/gtest.h>

// What a view gets that reads a value's properties by name.
namespace properties {

struct Expected {
    const char *name;
    QVariant value; // of exactly the property's type; an enumerator's name where the property is an enumeration
};

template <class Gadget> QVariant read(const Gadget &gadget, const char *name)
{
    const QMetaObject &meta = Gadget::staticMetaObject;
    const int index = meta.indexOfProperty(name);
    EXPECT_GE(index, 0) << name << " is no property";
    return index < 0 ? QVariant() : meta.property(index).readOnGadget(&gadget);
}

inline bool isEnumeration(const QVariant &value)
{
    return value.metaType().flags().testFlag(QMetaType::IsEnumeration);
}

// Each property has its value, and no property was left out of the list.
template <class Gadget> void expectAll(const Gadget &gadget, const QList<Expected> &expected)
{
    for (const Expected &property : expected) {
        QVariant value = read(gadget, property.name);
        if (isEnumeration(value))
            value = value.toString();
        EXPECT_EQ(value, property.value) << property.name << " is " << value.toString().toStdString();
    }
    EXPECT_EQ(Gadget::staticMetaObject.propertyCount(), expected.size());
}

} // namespace properties
