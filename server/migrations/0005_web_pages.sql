-- Browser sessions of the web pages. A visitor gets one before signing in,
-- so that the sign-in form already carries a token bound to it; signing in
-- replaces it by a new one. As with API sessions, only the SHA-256 of the
-- cookie's value is kept. pending_user_id marks a sign-in that waits for
-- the second factor.
CREATE TABLE web_sessions (
    token_hash bytea PRIMARY KEY,
    user_id uuid REFERENCES users(id) ON DELETE CASCADE,
    pending_user_id uuid REFERENCES users(id) ON DELETE CASCADE,
    csrf text NOT NULL,
    expires_at timestamptz NOT NULL,
    created_at timestamptz NOT NULL DEFAULT now()
);
CREATE INDEX web_sessions_user ON web_sessions(user_id);
CREATE INDEX web_sessions_expiry ON web_sessions(expires_at);

-- One-time links: a signed-in client's way into the browser (enter), an
-- address's confirmation (confirm) and a forgotten password (reset).
-- path is where an enter link leads.
CREATE TABLE web_links (
    token_hash bytea PRIMARY KEY,
    user_id uuid NOT NULL REFERENCES users(id) ON DELETE CASCADE,
    purpose text NOT NULL CHECK (purpose IN ('enter', 'confirm', 'reset')),
    path text NOT NULL DEFAULT '',
    expires_at timestamptz NOT NULL
);
CREATE INDEX web_links_expiry ON web_links(expires_at);
