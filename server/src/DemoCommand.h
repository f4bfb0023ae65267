#pragma once

class AdminCommands;

// demo: the demo account on a server, as the local tool makes it: a person
// with workspaces of varied dates, shared with two other people, with files
// and comments in them. Made once; a second run changes nothing.
class DemoCommand
{
public:
    static void addTo(AdminCommands& commands);
};
