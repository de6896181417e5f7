#pragma once

// The sign-in window as the coordinator sees it. Main thread only.

#include <functional>

class LoginView
{
public:
    LoginView() = default;
    virtual ~LoginView() = default;
    LoginView(const LoginView &) = delete;
    LoginView &operator=(const LoginView &) = delete;
    LoginView(LoginView &&) = delete;
    LoginView &operator=(LoginView &&) = delete;

    virtual void show() = 0;
    // Straight to the step that sets a password for a signed-in account without one.
    virtual void showSetPassword() = 0;

    std::function<void()> onSignedIn = [] {};
    // Closed before signing in: the application ends.
    std::function<void()> onClose = [] {};
};
