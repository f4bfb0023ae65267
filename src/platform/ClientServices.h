#pragma once

class VLRDesktopServices;
class VLRNotificationScheduling;
class VLRServiceLibrary;
class VLRUserDefaults;
class VLRUserNotificationCenter;

// What the client is handed at start instead of reaching for globals: the
// service library and the platform's services. The program makes the real
// ones in main(), a test makes doubles; all of them outlive the client.
struct ClientServices
{
    VLRServiceLibrary* library = nullptr;
    VLRUserDefaults* defaults = nullptr;
    // May be absent: then nothing is shown outside the popover.
    VLRUserNotificationCenter* notificationCenter = nullptr;
    // Spaces and schedules on notificationCenter, after defaults' switch.
    VLRNotificationScheduling* notifications = nullptr;
    VLRDesktopServices* desktop = nullptr;
};
