// Certificates by OpenSSL. Only the authority is kept on disk; server certificates are issued anew
// at each start, so that none expires in a data folder.
#include "lab/ca.h"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

#include "lab/private_file.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

using Key = std::shared_ptr<EVP_PKEY>;
using Cert = std::shared_ptr<X509>;

constexpr std::int64_t day = 24 * 60 * 60;
constexpr std::int64_t authority_life = 20 * 365 * day;
constexpr std::int64_t server_life = 397 * day;
constexpr const char* server_names = "DNS:localhost,DNS:lab.test,IP:127.0.0.1,IP:::1";

struct Pair {
    Cert certificate;
    Key key;
};

struct Order {
    std::string common_name;
    std::string alternative_names; // empty: an authority's certificate
    std::int64_t starts;           // seconds from now
    std::int64_t ends;
};

[[noreturn]] void fail(const std::string& what) {
    const auto code = ERR_get_error();
    const char* reason = ERR_reason_error_string(code);
    throw std::runtime_error(what + (reason ? std::string(": ") + reason : std::string()));
}

Key make_key() {
    EVP_PKEY* key = EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256");
    if (!key)
        fail("cannot make a key");
    return {key, EVP_PKEY_free};
}

std::uint64_t make_serial() {
    std::uint64_t serial = 0;
    if (RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) != 1)
        fail("no random bytes");
    return serial >> 1; // a serial number is positive
}

void add_extension(X509* certificate, X509* issuer, int nid, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value.c_str());
    if (!extension || X509_add_ext(certificate, extension, -1) != 1)
        fail("cannot add a certificate extension");
    X509_EXTENSION_free(extension);
}

void add_extensions(X509* certificate, X509* issuer, const Order& order) {
    const bool authority = order.alternative_names.empty();
    add_extension(
        certificate, issuer, NID_basic_constraints,
        authority ? "critical,CA:TRUE,pathlen:0" : "critical,CA:FALSE");
    add_extension(
        certificate, issuer, NID_key_usage,
        authority ? "critical,keyCertSign,cRLSign" : "critical,digitalSignature");
    add_extension(certificate, issuer, NID_subject_key_identifier, "hash");
    if (authority)
        return;
    add_extension(certificate, issuer, NID_authority_key_identifier, "keyid");
    add_extension(certificate, issuer, NID_ext_key_usage, "serverAuth");
    add_extension(certificate, issuer, NID_subject_alt_name, order.alternative_names);
}

// Signed by `issuer`, or by itself when there is none.
Pair issue(const Order& order, const Pair* issuer) {
    Pair made{Cert(X509_new(), X509_free), make_key()};
    X509* certificate = made.certificate.get();
    X509_NAME* subject = certificate ? X509_get_subject_name(certificate) : nullptr;
    if (!subject)
        fail("cannot make a certificate");
    X509* signer = issuer ? issuer->certificate.get() : certificate;
    X509_set_version(certificate, X509_VERSION_3);
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate), make_serial());
    X509_gmtime_adj(X509_getm_notBefore(certificate), order.starts);
    X509_gmtime_adj(X509_getm_notAfter(certificate), order.ends);
    X509_set_pubkey(certificate, made.key.get());
    X509_NAME_add_entry_by_txt(
        subject, "CN", MBSTRING_UTF8,
        reinterpret_cast<const unsigned char*>(order.common_name.c_str()), -1, -1, 0);
    X509_set_issuer_name(certificate, X509_get_subject_name(signer));
    add_extensions(certificate, signer, order);
    EVP_PKEY* key = issuer ? issuer->key.get() : made.key.get();
    if (X509_sign(certificate, key, EVP_sha256()) == 0)
        fail("cannot sign a certificate");
    return made;
}

Pair make_authority(const std::string& name) {
    char tag[17];
    std::snprintf(tag, sizeof tag, "%08x", static_cast<unsigned>(make_serial() & 0xffffffff));
    return issue({name + " " + tag, "", -day, authority_life}, nullptr);
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File open_file(const fs::path& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode), std::fclose);
    if (!file)
        throw std::runtime_error("cannot open " + path.string());
    return file;
}

fs::path trust_name(const fs::path& folder, X509* certificate) {
    char name[32];
    std::snprintf(name, sizeof name, "%08lx.0", X509_subject_name_hash(certificate));
    return folder / name;
}

void write_certificate(const fs::path& path, X509* certificate) {
    if (PEM_write_X509(open_file(path, "w").get(), certificate) != 1)
        fail("cannot write " + path.string());
}

// The key goes last: an authority counts as made when its key is there.
void save_authority(const Pair& authority, const fs::path& folder) {
    write_certificate(folder / "authority.crt", authority.certificate.get());
    const fs::path path = folder / "authority.key";
    const fs::path draft = folder / "authority.key.new";
    make_private_file(draft);
    {
        const File file = open_file(draft, "w");
        if (PEM_write_PrivateKey(
                file.get(), authority.key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1)
            fail("cannot write " + draft.string());
    }
    fs::rename(draft, path);
}

Pair load_authority(const fs::path& folder) {
    const File certificate = open_file(folder / "authority.crt", "r");
    make_private_file(folder / "authority.key");
    const File key = open_file(folder / "authority.key", "r");
    Pair pair{
        Cert(PEM_read_X509(certificate.get(), nullptr, nullptr, nullptr), X509_free),
        Key(PEM_read_PrivateKey(key.get(), nullptr, nullptr, nullptr), EVP_PKEY_free)};
    if (!pair.certificate || !pair.key)
        fail("cannot read the certificate authority in " + folder.string());
    return pair;
}

Pair open_authority(const fs::path& folder) {
    fs::create_directories(folder / "trust");
    if (fs::exists(folder / "authority.key"))
        return load_authority(folder);
    const Pair authority = make_authority("Lab cloud authority");
    save_authority(authority, folder);
    return authority;
}

std::shared_ptr<SSL_CTX> make_context(const Pair& server) {
    std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
    if (!context || SSL_CTX_use_certificate(context.get(), server.certificate.get()) != 1 ||
        SSL_CTX_use_PrivateKey(context.get(), server.key.get()) != 1)
        fail("cannot make a TLS context");
    SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION);
    // A resumed session would skip the certificate that a misbehaviour is about.
    SSL_CTX_set_session_cache_mode(context.get(), SSL_SESS_CACHE_OFF);
    SSL_CTX_set_num_tickets(context.get(), 0);
    SSL_CTX_set_options(context.get(), SSL_OP_NO_TICKET);
    return context;
}

} // namespace

CertificateAuthority::CertificateAuthority(const fs::path& folder) : folder_(folder) {
    const Pair authority = open_authority(folder_);
    write_certificate(
        trust_name(trust_folder(), authority.certificate.get()), authority.certificate.get());
    const Pair stranger = make_authority("Unknown authority");
    const auto context = [](const Order& order, const Pair& issuer) {
        return make_context(issue(order, &issuer));
    };
    contexts_ = {
        context({"localhost", server_names, -day, server_life}, authority),
        context({"localhost", server_names, -60 * day, -day}, authority),
        context({"localhost", server_names, -day, server_life}, stranger),
        context({"elsewhere", "DNS:elsewhere.invalid", -day, server_life}, authority),
    };
}

} // namespace lab
