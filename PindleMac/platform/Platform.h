#pragma once

namespace pindle {

class Accessibility;
class Application;
class Bundle;
class Clock;
class EventPosting;
class EventStore;
class HotKeys;
class LoginItem;
class NotificationCenter;
class Pasteboard;
class Screens;
class StatusBar;
class URLSession;
class UserDefaults;
class WindowServer;
class Workspace;

/// One of each facility. The facilities belong to whoever built the platform and outlive all logic.
struct Platform {
    Accessibility &accessibility;
    Application &application;
    Bundle &bundle;
    Clock &clock;
    EventPosting &eventPosting;
    EventStore &eventStore;
    HotKeys &hotKeys;
    LoginItem &loginItem;
    NotificationCenter &notificationCenter;
    Pasteboard &pasteboard;
    Screens &screens;
    StatusBar &statusBar;
    URLSession &urlSession;
    UserDefaults &userDefaults;
    WindowServer &windowServer;
    Workspace &workspace;

    /// Hands the platform over; to be called once, before the first use of any `shared` object.
    static void install(Platform &platform);
    /// The platform handed over; stops the program when there is none.
    static Platform &shared();
};

} // namespace pindle
