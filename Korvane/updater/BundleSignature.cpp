#include "Korvane/updater/BundleSignature.h"

#include "Korvane/updater/FileDigest.h"
#include "Korvane/updater/UpdateError.h"
#include "Korvane/updater/UpdateSentences.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/FolderFacts.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <vector>

#include <fcntl.h>

#include <openssl/bio.h>
#include <openssl/cms.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

namespace korvane {

namespace {

constexpr std::string_view manifestPath = "Contents/_CodeSignature/manifest";
constexpr std::string_view signaturePath = "Contents/_CodeSignature/manifest.cms";
constexpr std::size_t deepestFolder = 64;

template <auto release>
struct Releaser {
    template <typename T>
    void operator()(T* object) const {
        release(object);
    }
};
template <typename T, auto release>
using Owned = std::unique_ptr<T, Releaser<release>>;

using Memory = Owned<BIO, BIO_free_all>;
using Message = Owned<CMS_ContentInfo, CMS_ContentInfo_free>;
using Store = Owned<X509_STORE, X509_STORE_free>;

/// Gathers the paths below a bundle of all that is no folder.
void gather(const FileURL& folder, const std::string& prefix, std::size_t depth,
            std::vector<std::string>& paths) {
    const auto names = namesInFolder(folder.path());
    if (!names || depth > deepestFolder) {
        throw FileError(names ? ELOOP : errno, "read", folder.path());
    }
    for (const std::string& name : *names) {
        const FileURL place = folder.appending(name);
        FileFacts facts;
        if (const int error = readFacts(AT_FDCWD, place.path().c_str(), facts); error != 0) {
            throw FileError(error, "read", place.path());
        }
        const std::string path = prefix + name;
        if (facts.kind == DirectoryReader::Kind::folder) {
            gather(place, path + "/", depth + 1, paths);
        } else if (path != manifestPath && path != signaturePath) {
            // A name of two lines could pretend to be two files.
            if (name.find('\n') != std::string::npos) {
                throw FileError(EILSEQ, "read", place.path());
            }
            paths.push_back(path);
        }
    }
}

Digest256 contentDigest(const FileURL& bundle, const std::string& path) {
    const FileURL place = bundle.appending(path);
    const FileURL target = place.resolvingSymlinks();
    const std::string inside = bundle.resolvingSymlinks().path() + "/";
    if (!target.path().starts_with(inside)) {
        throw FileError(EXDEV, "read", place.path());
    }
    return fileDigest(target);
}

Store trustedRoots(const FileURL& file) {
    const std::optional<std::string> text = readFile(file);
    const Memory memory(
        BIO_new_mem_buf(text ? text->data() : "", text ? static_cast<int>(text->size()) : 0));
    Store store(X509_STORE_new());
    std::size_t count = 0;
    while (memory && store) {
        const Owned<X509, X509_free> root(
            PEM_read_bio_X509(memory.get(), nullptr, nullptr, nullptr));
        if (!root) {
            break;
        }
        count += X509_STORE_add_cert(store.get(), root.get()) == 1 ? 1 : 0;
    }
    ERR_clear_error();
    if (count == 0) {
        store.reset();
    }
    return store;
}

/// What chains and dates do not say: made for signing code, and issued to the team.
bool isSigner(X509& certificate, std::string_view team) {
    constexpr std::uint32_t codeSigning = XKU_CODE_SIGN;
    if ((X509_get_extension_flags(&certificate) & EXFLAG_XKUSAGE) == 0 ||
        (X509_get_extended_key_usage(&certificate) & codeSigning) == 0 ||
        (X509_get_key_usage(&certificate) & KU_DIGITAL_SIGNATURE) == 0 ||
        (X509_get_extension_flags(&certificate) & EXFLAG_CA) != 0) {
        return false;
    }
    X509_NAME* subject = X509_get_subject_name(&certificate);
    const int index = X509_NAME_get_index_by_NID(subject, NID_organizationalUnitName, -1);
    if (index < 0 || X509_NAME_get_index_by_NID(subject, NID_organizationalUnitName, index) >= 0) {
        return false;
    }
    const ASN1_STRING* unit = X509_NAME_ENTRY_get_data(X509_NAME_get_entry(subject, index));
    unsigned char* text = nullptr;
    const int length = ASN1_STRING_to_UTF8(&text, unit);
    const Owned<unsigned char, [](unsigned char* bytes) { OPENSSL_free(bytes); }> owned(text);
    return length >= 0 && std::string_view(reinterpret_cast<const char*>(text),
                                           static_cast<std::size_t>(length)) == team;
}

bool isSignedBy(const std::string& manifest, const std::string& signature, X509_STORE& roots,
                std::string_view team) {
    const Memory encoded(BIO_new_mem_buf(signature.data(), static_cast<int>(signature.size())));
    const Message message(encoded ? d2i_CMS_bio(encoded.get(), nullptr) : nullptr);
    const Memory content(BIO_new_mem_buf(manifest.data(), static_cast<int>(manifest.size())));
    if (!message || !content || OBJ_obj2nid(CMS_get0_type(message.get())) != NID_pkcs7_signed ||
        CMS_is_detached(message.get()) != 1 ||
        sk_CMS_SignerInfo_num(CMS_get0_SignerInfos(message.get())) != 1 ||
        CMS_verify(message.get(), nullptr, &roots, content.get(), nullptr, CMS_BINARY) != 1) {
        return false;
    }
    const Owned<STACK_OF(X509), [](STACK_OF(X509) * list) { sk_X509_free(list); }> signers(
        CMS_get0_signers(message.get()));
    return signers && sk_X509_num(signers.get()) == 1 &&
           isSigner(*sk_X509_value(signers.get(), 0), team);
}

} // namespace

std::string bundleManifest(const FileURL& bundle) {
    std::vector<std::string> paths;
    gather(bundle, "", 0, paths);
    std::sort(paths.begin(), paths.end());
    std::string manifest;
    for (const std::string& path : paths) {
        manifest += hexText(contentDigest(bundle, path)) + "  " + path + "\n";
    }
    return manifest;
}

void verifyBundleSignature(const FileURL& bundle, const SigningRequirement& requirement) {
    std::string found;
    std::optional<std::string> manifest;
    std::optional<std::string> signature;
    try {
        found = bundleManifest(bundle);
        manifest = readFile(bundle.appending(manifestPath));
        signature = readFile(bundle.appending(signaturePath));
    } catch (const FileError&) {
        throw UpdateError(UpdateSentences::unexaminedApp);
    }
    Store roots;
    try {
        roots = trustedRoots(requirement.rootCertificates);
    } catch (const FileError&) {
        roots.reset();
    }
    // Code signing has no purpose of its own in the library: what the certificate is for is checked
    // afterwards. The level refuses keys and digests that can be forged today.
    constexpr int authenticationLevel = 2;
    if (!roots || requirement.teamIdentifier.empty() ||
        X509_STORE_set_purpose(roots.get(), X509_PURPOSE_ANY) != 1) {
        throw UpdateError(UpdateSentences::unpreparedCheck);
    }
    X509_VERIFY_PARAM_set_auth_level(X509_STORE_get0_param(roots.get()), authenticationLevel);
    const bool isSigned = manifest && signature && *manifest == found &&
                          isSignedBy(*manifest, *signature, *roots, requirement.teamIdentifier);
    ERR_clear_error();
    if (!isSigned) {
        throw UpdateError(UpdateSentences::wrongSignature);
    }
}

} // namespace korvane
