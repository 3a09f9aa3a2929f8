#include "Platform/macOS/BundleUserDefaults.h"
#import <Foundation/Foundation.h>

QVariant BundleUserDefaults::value(const QString &key) const
{
    const id object = [NSUserDefaults.standardUserDefaults objectForKey:key.toNSString()];
    if ([object isKindOfClass:NSString.class])
        return QString::fromNSString(static_cast<NSString *>(object));
    if (![object isKindOfClass:NSNumber.class])
        return {};
    NSNumber *const number = static_cast<NSNumber *>(object);
    if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID())
        return QVariant(bool(number.boolValue));
    return QVariant(qint64(number.longLongValue));
}

void BundleUserDefaults::setValue(const QString &key, const QVariant &value)
{
    NSUserDefaults *const defaults = NSUserDefaults.standardUserDefaults;
    if (value.typeId() == QMetaType::Bool)
        [defaults setBool:value.toBool() forKey:key.toNSString()];
    else if (value.typeId() == QMetaType::QString)
        [defaults setObject:value.toString().toNSString() forKey:key.toNSString()];
    else
        [defaults setObject:@(value.toLongLong()) forKey:key.toNSString()];
}
