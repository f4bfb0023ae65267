-- A folder is published as one tar stream of its files (paths relative to
-- the folder), stored like any content; the flag says how to read it.
ALTER TABLE revisions ADD COLUMN folder boolean NOT NULL DEFAULT false;
ALTER TABLE uploads ADD COLUMN folder boolean NOT NULL DEFAULT false;
