-- An upload may be announced without its SHA-256: the client hashes while it
-- sends and names the digest when all bytes are there. What the server
-- hashed while receiving is kept meanwhile, so that the bytes need not be
-- read again.
ALTER TABLE uploads ALTER COLUMN sha256 DROP NOT NULL;
ALTER TABLE uploads ADD COLUMN received_sha256 text;
