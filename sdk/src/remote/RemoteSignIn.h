#pragma once

#include "sdk/net/RemoteEndpoint.h"

#include "service/VLRUserSession.h"

// Signing in to a team server: the address and password, then, for an
// account with a second factor, a verifier for its code. Once the server
// hands out a token, the account and its workspaces are read before the
// session is handed over, so that the client binds a session that knows
// whether it has workspaces. Every answer comes on the GUI thread, exactly
// one a sign-in.
class RemoteSignIn
{
public:
    static void start(const RemoteEndpoint& server, const VLRLoginCredentials& credentials,
                      const VLRSignInHandler& completionHandler);
    // With the token of a sign-in the server accepted.
    static void signedIn(const RemoteEndpoint& session, const VLRSignInHandler& completionHandler);
};
