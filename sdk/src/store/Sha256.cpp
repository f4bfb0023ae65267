#include "sdk/store/Sha256.h"

#include <openssl/evp.h>

Sha256::Sha256()
    : m_context(EVP_MD_CTX_new())
{
    EVP_DigestInit_ex(m_context, EVP_sha256(), nullptr);
}

Sha256::~Sha256()
{
    EVP_MD_CTX_free(m_context);
}

void Sha256::add(const char* data, qint64 size)
{
    EVP_DigestUpdate(m_context, data, size_t(size));
}

QByteArray Sha256::hexDigest()
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_DigestFinal_ex(m_context, digest, &length);
    EVP_DigestInit_ex(m_context, EVP_sha256(), nullptr);
    return QByteArray(reinterpret_cast<const char*>(digest), int(length)).toHex();
}

QByteArray Sha256::of(const QByteArray& data)
{
    Sha256 hash;
    hash.add(data.constData(), data.size());
    return hash.hexDigest();
}
