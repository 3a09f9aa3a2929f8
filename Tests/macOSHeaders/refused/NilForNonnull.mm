// Refused: null passed to a callee that requires a non-null argument
#import <Foundation/Foundation.h>

NSAppleScript *script()
{
    return [[NSAppleScript alloc] initWithSource:nil];
}
