#pragma once

// What the icon in the menu bar says of the whole system.
enum class MenuBarIcon {
    normal, // the service is up and every profile is well
    offline, // no service, or nothing configured
    starting, // the service or a profile is on its way up; the mark pulses
    attention, // up, but something needs a person
    failed, // the service has failed
};
