#pragma once

// The account pages as the coordinator sees them. Main thread only.

#include <functional>

class AccountView
{
public:
    AccountView() = default;
    virtual ~AccountView() = default;
    AccountView(const AccountView &) = delete;
    AccountView &operator=(const AccountView &) = delete;
    AccountView(AccountView &&) = delete;
    AccountView &operator=(AccountView &&) = delete;

    virtual void show() = 0;

    std::function<void()> onChanged = [] {};
    std::function<void()> onSignOut = [] {};
};
