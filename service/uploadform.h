// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/textreply.h"

#include <memory>

class FrozenFile;
class QHttpMultiPart;

/// The Content-Disposition of a file part. A double quote or a line break in the name is written
/// as %22, %0D or %0A, as browsers do, so that a name cannot terminate its value or its header.
[[nodiscard]] QString fileDisposition(const QString &fileName);

/// The body of an upload: the opened file, named as it was opened, as "uploadedFile", then one part
/// for each field. The body owns the file; the caller owns the body.
[[nodiscard]] std::unique_ptr<QHttpMultiPart> uploadForm(std::unique_ptr<FrozenFile> file,
                                                         const FormFields &fields);
