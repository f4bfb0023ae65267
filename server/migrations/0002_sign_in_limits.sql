-- Failed sign-ins counted per address and per account over a window, shared
-- by all server processes so that spreading guesses over them gains nothing.
-- An account is counted under its lower-case e-mail address, whether or not
-- it exists, so that the answers tell nothing about which ones do.
CREATE TABLE sign_in_failures (
    scope text NOT NULL CHECK (scope IN ('address', 'account')),
    key text NOT NULL,
    failures integer NOT NULL,
    window_start timestamptz NOT NULL DEFAULT now(),
    PRIMARY KEY (scope, key)
);
