// Refused: no matching function for call to 'RegisterEventHotKey'
#import <Carbon/Carbon.h>

OSStatus grab(EventHotKeyID id, EventHotKeyRef *made)
{
    return RegisterEventHotKey(kVK_ANSI_T, id, cmdKey, GetApplicationEventTarget(), 0, made);
}
