# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The drawings behind the pictures of the views; see ../README.md."""
