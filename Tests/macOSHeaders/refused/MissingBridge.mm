// Refused: cannot implicitly convert argument of type 'NSDictionary *__strong' to 'CFDictionaryRef'
#import <Foundation/Foundation.h>
#import <Security/Security.h>

OSStatus forget(NSDictionary *query)
{
    return SecItemDelete(query);
}
