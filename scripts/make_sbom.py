#!/usr/bin/python3
"""make_sbom.py linux|windows VERSION COMMIT OUT FILE...: the bill of materials of the built FILEs, in SPDX 2.3.

Versions are those of the Debian packages that this machine has built with; the time is SOURCE_DATE_EPOCH.
"""

import datetime
import hashlib
import json
import os
import pathlib
import subprocess
import sys

# SPDX name, Debian package, licence, systems, how it gets into the files, and into which.
PARTS = [
    ("zlib", "zlib1g-dev", "Zlib", {"linux"}, "DYNAMIC_LINK", {"library", "tool"}),
    ("zlib", "libz-mingw-w64-dev", "Zlib", {"windows"}, "STATIC_LINK", {"library", "tool"}),
    ("lmdb", "liblmdb-dev", "OLDAP-2.8", {"linux"}, "DYNAMIC_LINK", {"tool"}),
    ("cli11", "libcli11-dev", "BSD-3-Clause", {"linux", "windows"}, "STATIC_LINK", {"tool"}),
    ("fmt", "libfmt-dev", "MIT", {"linux", "windows"}, "STATIC_LINK", {"tool"}),
    ("nlohmann-json", "nlohmann-json3-dev", "MIT", {"linux", "windows"}, "STATIC_LINK", {"tool"}),
    ("libstdc++", "libstdc++-12-dev", "GPL-3.0-or-later WITH GCC-exception-3.1", {"linux"}, "STATIC_LINK", {"library"}),
    ("libstdc++", "g++-mingw-w64-x86-64-win32", "GPL-3.0-or-later WITH GCC-exception-3.1", {"windows"}, "STATIC_LINK",
     {"library", "tool"}),
    ("mingw-w64", "mingw-w64-x86-64-dev", "ZPL-2.1", {"windows"}, "STATIC_LINK", {"library", "tool"}),
]


def debian_version(package):
    query = ["dpkg-query", "--show", "--showformat=${Version}", package]
    return subprocess.run(query, stdout=subprocess.PIPE, text=True, check=True).stdout


def own_package(name, identifier, version, commit, path):
    digest = hashlib.sha256(path.read_bytes()).hexdigest()
    return {
        "SPDXID": f"SPDXRef-{identifier}",
        "name": name,
        "versionInfo": version,
        "packageFileName": path.name,
        "supplier": "Organization: VessaDCM developers",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "sourceInfo": f"commit {commit}",
        "checksums": [{"algorithm": "SHA256", "checksumValue": digest}],
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": "NOASSERTION",
        "copyrightText": "NOASSERTION",
    }


def part_package(name, package, licence):
    version = debian_version(package)
    return {
        "SPDXID": f"SPDXRef-{package.replace('+', 'p')}",
        "name": name,
        "versionInfo": version,
        "supplier": "Organization: Debian",
        "downloadLocation": f"https://packages.debian.org/bookworm/{package}",
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": "NOASSERTION",
        "externalRefs": [
            {
                "referenceCategory": "PACKAGE-MANAGER",
                "referenceType": "purl",
                "referenceLocator": f"pkg:deb/debian/{package.replace('+', '%2B')}@{version}?distro=bookworm",
            }
        ],
    }


def relation(one, kind, other):
    return {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}


def bill(system, version, commit, files):
    """Of the two files: the library and the tool."""
    time = datetime.datetime.fromtimestamp(int(os.environ.get("SOURCE_DATE_EPOCH", "0")), datetime.timezone.utc)
    owners = {"library": "VessaDCM", "tool": "vessa"}
    packages = [own_package(owner, owner, version, commit, path) for owner, path in zip(owners.values(), files)]
    relations = [relation("SPDXRef-DOCUMENT", "DESCRIBES", package["SPDXID"]) for package in packages]
    for name, package, licence, systems, link, users in PARTS:
        if system in systems:
            part = part_package(name, package, licence)
            packages.append(part)
            relations += [relation(f"SPDXRef-{owners[user]}", link, part["SPDXID"]) for user in sorted(users)]
    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"VessaDCM-{version}-{system}",
        "documentNamespace": f"https://vessadcm.invalid/spdx/{system}/{version}/{commit}",
        "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Tool: make_sbom.py"]},
        "packages": packages,
        "relationships": relations,
    }


def main():
    system, version, commit, out, *files = sys.argv[1:]
    document = bill(system, version, commit, [pathlib.Path(file) for file in files])
    pathlib.Path(out).parent.mkdir(parents=True, exist_ok=True)
    pathlib.Path(out).write_text(json.dumps(document, indent=1) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
