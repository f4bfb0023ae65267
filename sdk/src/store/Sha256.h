#pragma once

#include <QByteArray>

#include <memory>

struct evp_md_ctx_st;

// Incremental SHA-256 (OpenSSL's, which uses the processor's SHA
// instructions where there are any: hashing must keep up with the disk).
class Sha256
{
public:
    Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;
    ~Sha256();

    void add(const char* data, qint64 size);
    // The digest as 64 lower-case hex digits; the hash starts over after.
    QByteArray hexDigest();

    static QByteArray of(const QByteArray& data);

private:
    evp_md_ctx_st* m_context;
};
