#include "Platform/macOS/VeranoxTunnelSecretStore.h"
#import <Foundation/Foundation.h>
#include <QByteArray>
#import <Security/Security.h>

namespace {

NSMutableDictionary *baseQuery(const QString &tunnelName)
{
    NSMutableDictionary *const query = [NSMutableDictionary dictionary];
    query[(__bridge NSString *)kSecClass] = (__bridge id)kSecClassGenericPassword;
    query[(__bridge NSString *)kSecAttrService] = @"app.veranox.tunnel-ssh-password";
    query[(__bridge NSString *)kSecAttrAccount] = tunnelName.toNSString();
    return query;
}

NSMutableDictionary *queryOfOne(const QString &tunnelName)
{
    NSMutableDictionary *const query = baseQuery(tunnelName);
    query[(__bridge NSString *)kSecMatchLimit] = (__bridge id)kSecMatchLimitOne;
    return query;
}

bool add(const QString &tunnelName, NSData *secret)
{
    NSMutableDictionary *const item = baseQuery(tunnelName);
    item[(__bridge NSString *)kSecValueData] = secret;
    item[(__bridge NSString *)kSecAttrAccessible] = (__bridge id)kSecAttrAccessibleAfterFirstUnlock;
    return SecItemAdd((__bridge CFDictionaryRef)item, nullptr) == errSecSuccess;
}

} // namespace

std::optional<QString> VeranoxTunnelSecretStore::password(const QString &tunnelName)
{
    NSMutableDictionary *const query = queryOfOne(tunnelName);
    query[(__bridge NSString *)kSecReturnData] = @YES;
    CFTypeRef found = nullptr;
    if (SecItemCopyMatching((__bridge CFDictionaryRef)query, &found) != errSecSuccess || !found)
        return std::nullopt;
    const QByteArray bytes = QByteArray::fromNSData((__bridge_transfer NSData *)found);
    return bytes.isValidUtf8() ? std::optional(QString::fromUtf8(bytes)) : std::nullopt;
}

bool VeranoxTunnelSecretStore::hasPassword(const QString &tunnelName)
{
    return SecItemCopyMatching((__bridge CFDictionaryRef)queryOfOne(tunnelName), nullptr) == errSecSuccess;
}

bool VeranoxTunnelSecretStore::setPassword(const QString &password, const QString &tunnelName)
{
    if (password.isEmpty()) {
        deletePassword(tunnelName);
        return true;
    }
    NSData *const secret = password.toUtf8().toNSData();
    NSDictionary *const change = @{(__bridge NSString *)kSecValueData : secret};
    const OSStatus status =
        SecItemUpdate((__bridge CFDictionaryRef)baseQuery(tunnelName), (__bridge CFDictionaryRef)change);
    return status == errSecItemNotFound ? add(tunnelName, secret) : status == errSecSuccess;
}

void VeranoxTunnelSecretStore::deletePassword(const QString &tunnelName)
{
    SecItemDelete((__bridge CFDictionaryRef)baseQuery(tunnelName));
}
