// SPDX-License-Identifier: MIT
#pragma once

/// Marks what the host's libraries export.
#define OPENQUIL_API __attribute__((visibility("default")))
