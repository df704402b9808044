// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
.pragma library

// Text.ElideNone
const noElide = 3;

/// The first item in a tree, the root included, that is as wanted.
function find(item, isWanted) {
    if (isWanted(item))
        return item;
    for (let i = 0; i < item.children.length; ++i) {
        const found = find(item.children[i], isWanted);
        if (found)
            return found;
    }
    return null;
}

/// Rows for each state at each scale.
function scales(states) {
    const rows = [];
    for (const state of states) {
        for (const scale of [0.6, 1, 1.5])
            rows.push({
                "tag": state + " at " + scale,
                "state": state,
                "scale": scale
            });
    }
    return rows;
}

/// The texts and controls that leave the view, and the texts that need more room than they have.
function misfits(view) {
    const found = [];
    const visit = item => {
        if (!item.visible || item.opacity === 0)
            return;
        if (item.text !== undefined && item.width > 0) {
            const at = item.mapToItem(view, 0, 0);
            const isInside = at.x >= -0.5 && at.y >= -0.5 && at.x + item.width <= view.width + 0.5 && at.y + item.height <= view.height + 0.5;
            const isWhole = item.contentWidth === undefined || item.echoMode !== undefined || item.elide !== noElide || (item.contentWidth <= item.width + 0.5 && item.contentHeight <= item.height + 0.5);
            if (!isInside || !isWhole)
                found.push(item.text);
        }
        for (let i = 0; i < item.children.length; ++i)
            visit(item.children[i]);
    };
    visit(view);
    return found;
}
