-- The software catalogue: vendors, products, installers with their
-- revisions (the package's bytes live in the store under their SHA-256),
-- each user's purchases, and the installs of each user's machines. Names of
-- vendors, products and installers are unique so that the admin commands can
-- name them.
CREATE TABLE vendors (
    id uuid PRIMARY KEY DEFAULT gen_random_uuid(),
    name text NOT NULL UNIQUE,
    created_at timestamptz NOT NULL DEFAULT now()
);

CREATE TABLE products (
    id uuid PRIMARY KEY DEFAULT gen_random_uuid(),
    name text NOT NULL UNIQUE,
    vendor_id uuid REFERENCES vendors(id) ON DELETE SET NULL,
    image bytea,
    created_at timestamptz NOT NULL DEFAULT now()
);

CREATE TABLE installers (
    id uuid PRIMARY KEY DEFAULT gen_random_uuid(),
    name text NOT NULL UNIQUE,
    description text NOT NULL DEFAULT '',
    platform text NOT NULL DEFAULT '',
    image bytea,
    image_url text,
    created_at timestamptz NOT NULL DEFAULT now()
);

CREATE TABLE installer_products (
    installer_id uuid NOT NULL REFERENCES installers(id) ON DELETE CASCADE,
    product_id uuid NOT NULL REFERENCES products(id) ON DELETE CASCADE,
    position integer NOT NULL,
    PRIMARY KEY (installer_id, product_id)
);
CREATE INDEX installer_products_product ON installer_products(product_id);

CREATE TABLE installer_revisions (
    id uuid PRIMARY KEY DEFAULT gen_random_uuid(),
    installer_id uuid NOT NULL REFERENCES installers(id) ON DELETE CASCADE,
    number integer NOT NULL,
    version text,
    file_name text NOT NULL,
    size bigint NOT NULL,
    sha256 text NOT NULL,
    created_at timestamptz NOT NULL DEFAULT now(),
    UNIQUE (installer_id, number)
);

CREATE TABLE purchases (
    id uuid PRIMARY KEY DEFAULT gen_random_uuid(),
    user_id uuid NOT NULL REFERENCES users(id) ON DELETE CASCADE,
    product_id uuid NOT NULL REFERENCES products(id) ON DELETE CASCADE,
    renews_at timestamptz NOT NULL,
    canceled boolean NOT NULL DEFAULT false,
    payment_type text NOT NULL DEFAULT 'credit_card',
    cc_expires_on timestamptz,
    manage_url text,
    created_at timestamptz NOT NULL DEFAULT now(),
    UNIQUE (user_id, product_id)
);

-- An installer is new to a user until one of the user's machines installed
-- it, so the server keeps every machine's install.
CREATE TABLE installs (
    user_id uuid NOT NULL REFERENCES users(id) ON DELETE CASCADE,
    installer_id uuid NOT NULL REFERENCES installers(id) ON DELETE CASCADE,
    machine_id text NOT NULL,
    revision_id uuid REFERENCES installer_revisions(id) ON DELETE SET NULL,
    version text,
    installed_at timestamptz NOT NULL DEFAULT now(),
    PRIMARY KEY (user_id, installer_id, machine_id)
);

-- A change of someone's catalogue is pushed to that user alone: such an
-- event names a user instead of a workspace (as the administrators' events
-- do; whichever migration comes first makes the column).
ALTER TABLE events ADD COLUMN IF NOT EXISTS user_id uuid REFERENCES users(id) ON DELETE CASCADE;
ALTER TABLE events ALTER COLUMN workspace_id DROP NOT NULL;
CREATE INDEX IF NOT EXISTS events_user ON events(user_id, id) WHERE user_id IS NOT NULL;
