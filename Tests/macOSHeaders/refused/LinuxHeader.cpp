// Refused: <sys/epoll.h> does not exist on macOS
#include <sys/epoll.h>

int made = epoll_create1(0);
