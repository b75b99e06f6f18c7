#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string>

namespace korvane {

/// Whose signature an app must carry.
struct SigningRequirement {
    std::string teamIdentifier; ///< the organisational unit of the signer's certificate
    FileURL rootCertificates;   ///< a PEM file: what the signer's certificate must lead to
};

/// Everything in a bundle but its signature, a line a file in the order of the paths' bytes: the
/// SHA-256 of the content, two blanks, the path below the bundle. A link counts as the file in the
/// bundle that it leads to. Throws FileError when something cannot be read or is of another kind.
[[nodiscard]] std::string bundleManifest(const FileURL& bundle);

/// Checks the signature of an app on disk: Contents/_CodeSignature/manifest must say exactly what
/// the bundle holds, and manifest.cms beside it must be a detached CMS signature of the manifest by
/// one code-signing certificate of the team. Throws UpdateError with the sentence of what failed.
/// Any thread.
void verifyBundleSignature(const FileURL& bundle, const SigningRequirement& requirement);

} // namespace korvane
