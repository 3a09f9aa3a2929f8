// Refused: undeclared selector 'clickd:'
#import <AppKit/AppKit.h>

void listen(NSButton *button)
{
    button.action = @selector(clickd:);
}
