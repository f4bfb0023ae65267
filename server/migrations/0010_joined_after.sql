-- A newcomer to a workspace is told what happens there from their joining
-- on: what happened before is the workspace's history, read by listing its
-- publications, not news to be told again.
ALTER TABLE members ADD COLUMN joined_after bigint NOT NULL DEFAULT 0;

CREATE FUNCTION member_joins() RETURNS trigger LANGUAGE plpgsql AS $$
BEGIN
    NEW.joined_after := (SELECT coalesce(max(id), 0) FROM events);
    RETURN NEW;
END
$$;

CREATE TRIGGER member_joins BEFORE INSERT ON members
    FOR EACH ROW EXECUTE FUNCTION member_joins();
