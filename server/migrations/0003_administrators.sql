-- Administrators, avatars, and events meant for one person rather than a
-- workspace (a changed password).
ALTER TABLE users ADD COLUMN administrator boolean NOT NULL DEFAULT false;

-- The picture's bytes lie in the store under their SHA-256.
ALTER TABLE users ADD COLUMN avatar_sha256 text;
ALTER TABLE users ADD COLUMN avatar_type text;

ALTER TABLE events ADD COLUMN user_id uuid REFERENCES users(id) ON DELETE CASCADE;
ALTER TABLE events ALTER COLUMN workspace_id DROP NOT NULL;
ALTER TABLE events ADD CONSTRAINT events_one_audience CHECK ((workspace_id IS NULL) <> (user_id IS NULL));
CREATE INDEX events_user ON events(user_id, id) WHERE user_id IS NOT NULL;
