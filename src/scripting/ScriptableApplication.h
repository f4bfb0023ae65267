#pragma once

class MainViewController;

// What the script commands reach of the application's root object.
class ScriptableApplication
{
public:
    virtual ~ScriptableApplication() = default;
    // May be absent: then every command does nothing.
    virtual MainViewController* mainViewController() const = 0;
    virtual void setSkipOpeningPop(bool skip) = 0;
};
