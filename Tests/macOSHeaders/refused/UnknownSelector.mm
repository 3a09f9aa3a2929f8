// Refused: no visible @interface for 'NSApplication' declares the selector 'setActivationPolicies:'
#import <AppKit/AppKit.h>

void becomeAgent()
{
    [NSApplication.sharedApplication setActivationPolicies:NSApplicationActivationPolicyAccessory];
}
