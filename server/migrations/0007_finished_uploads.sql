-- A finished upload is remembered, with the revision it made, until the
-- sweeper's timeout has passed since it finished: a client whose last answer
-- was lost asks again and learns that revision instead of sending the file
-- a second time.
ALTER TABLE uploads ADD COLUMN revision_id uuid REFERENCES revisions(id) ON DELETE CASCADE;
ALTER TABLE uploads ADD COLUMN finished_at timestamptz;
