#include "Platform/InformationDictionary.h"
#import <Foundation/Foundation.h>

QVariantMap platform::informationDictionary()
{
    static constexpr const char *keys[] = {"CFBundleIdentifier", "CFBundleShortVersionString", "CFBundleVersion",
        "VeranoxBuildCommit", "VeranoxBuildID", "VeranoxBuildDate", "VeranoxBuildChannel"};
    QVariantMap dictionary;
    for (const char *key : keys) {
        const QString name = QString::fromLatin1(key);
        const id value = [NSBundle.mainBundle objectForInfoDictionaryKey:name.toNSString()];
        if ([value isKindOfClass:NSString.class])
            dictionary.insert(name, QString::fromNSString(static_cast<NSString *>(value)));
    }
    return dictionary;
}
