#include "tests/updater/TestCertificates.h"

#include <atomic>
#include <stdexcept>

#include <openssl/cms.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

namespace korvane::testing {

namespace {

std::string contentOf(BIO* memory) {
    char* bytes = nullptr;
    const long length = BIO_get_mem_data(memory, &bytes);
    std::string text(bytes, static_cast<std::size_t>(length));
    BIO_free(memory);
    return text;
}

Credential blank(const std::vector<std::string>& units, long validForDays) {
    static std::atomic<long> serial = 1;
    Credential made{{EVP_EC_gen("P-256"), EVP_PKEY_free}, {X509_new(), X509_free}};
    X509* certificate = made.certificate.get();
    X509_set_version(certificate, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), serial++);
    X509_gmtime_adj(X509_getm_notBefore(certificate), -86400L * 30);
    X509_gmtime_adj(X509_getm_notAfter(certificate), 86400L * validForDays);
    X509_set_pubkey(certificate, made.key.get());
    X509_NAME* subject = X509_get_subject_name(certificate);
    const auto add = [&](const char* field, const std::string& value) {
        X509_NAME_add_entry_by_txt(subject, field, MBSTRING_UTF8,
                                   reinterpret_cast<const unsigned char*>(value.c_str()), -1, -1,
                                   0);
    };
    add("CN", "holder " + std::to_string(serial));
    for (const std::string& unit : units) {
        add("OU", unit);
    }
    return made;
}

void extend(X509* certificate, int kind, const std::string& value) {
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.c_str());
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

} // namespace

std::string Credential::certificatePEM() const {
    BIO* memory = BIO_new(BIO_s_mem());
    PEM_write_bio_X509(memory, certificate.get());
    return contentOf(memory);
}

TestAuthority::TestAuthority() : root_(blank({}, 1)) {
    X509* certificate = root_.certificate.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
    extend(certificate, NID_basic_constraints, "critical,CA:TRUE");
    extend(certificate, NID_key_usage, "critical,keyCertSign");
    X509_sign(certificate, root_.key.get(), EVP_sha256());
}

Credential TestAuthority::issue(const Wish& wish) const {
    Credential made = blank(wish.units, wish.validForDays);
    X509* certificate = made.certificate.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(root_.certificate.get()));
    extend(certificate, NID_basic_constraints, "critical,CA:FALSE");
    extend(certificate, NID_key_usage, "critical,digitalSignature");
    extend(certificate, NID_ext_key_usage, wish.usage);
    if (!wish.names.empty()) {
        extend(certificate, NID_subject_alt_name, wish.names);
    }
    if (X509_sign(certificate, root_.key.get(), EVP_sha256()) == 0) {
        throw std::runtime_error("no certificate could be made");
    }
    return made;
}

std::string signedMessage(const std::string& text, const Credential& signer, bool attached) {
    BIO* content = BIO_new_mem_buf(text.data(), static_cast<int>(text.size()));
    CMS_ContentInfo* message =
        CMS_sign(signer.certificate.get(), signer.key.get(), nullptr, content,
                 CMS_BINARY | (attached ? 0U : static_cast<unsigned>(CMS_DETACHED)));
    BIO* encoded = BIO_new(BIO_s_mem());
    i2d_CMS_bio(encoded, message);
    CMS_ContentInfo_free(message);
    BIO_free(content);
    return contentOf(encoded);
}

} // namespace korvane::testing
