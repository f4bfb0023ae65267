-- Joining or leaving a workspace, or a new role in it, is pushed like a
-- publication: the workspace's members (a newcomer among them) reload its
-- members, and whoever left is told on their own, having no longer any
-- share in the workspace's events. A workspace or account being deleted
-- takes its events with it, so none is written for them.
CREATE FUNCTION members_changed() RETURNS trigger LANGUAGE plpgsql AS $$
DECLARE
    changed members%ROWTYPE;
    told bigint;
BEGIN
    IF TG_OP = 'DELETE' THEN
        changed := OLD;
    ELSE
        changed := NEW;
    END IF;
    IF EXISTS (SELECT 1 FROM workspaces WHERE id = changed.workspace_id) THEN
        INSERT INTO events(workspace_id, kind, data)
            VALUES (changed.workspace_id, 'members', jsonb_build_object('userID', changed.user_id))
            RETURNING id INTO told;
        PERFORM pg_notify('veluria_events', told::text);
    END IF;
    IF TG_OP = 'DELETE' AND EXISTS (SELECT 1 FROM users WHERE id = changed.user_id) THEN
        INSERT INTO events(user_id, kind, data)
            VALUES (changed.user_id, 'members',
                    jsonb_build_object('userID', changed.user_id, 'workspace', changed.workspace_id))
            RETURNING id INTO told;
        PERFORM pg_notify('veluria_events', told::text);
    END IF;
    RETURN NULL;
END
$$;

CREATE TRIGGER members_changed AFTER INSERT OR DELETE OR UPDATE OF role ON members
    FOR EACH ROW EXECUTE FUNCTION members_changed();
