
// Values, and sets of them, in the panel.

const kTextStep = 2000;   // characters of a text that are shown at once
const kColumnsMost = 12;  // of a table that compares items
const kChildrenMost = 200;  // of an item that is compared
const kAxes = ['x', 'y', 'z', 'w'];

/** A button that leads to an item. */
function drawGo(store, item, text) {
    const words = brief(text ?? store.label(item), 200) || '\u00a0';
    return make('button', { type: 'button', class: 'go', 'data-go': item }, words);
}

/** A text, the first part of it where it is long, with a button for the rest. */
function drawText(text) {
    const box = make('pre', { class: 'text string' }, seenLines(shortened(text, kTextStep)));
    if (text.length <= kTextStep) return [box];
    const button = make('button', { type: 'button', class: 'plain more', click: () => {
        box.textContent = seenLines(text);
        retire(button);
    } }, `Show all (${counted(text.length)} characters)`);
    return [box, button];
}

/** What says that the page holds less than the store, of a value with this name where it is not the only one. */
function drawCut(store, item, name) {
    if (!store.cut.has(item)) return null;
    const value = store.value(item);
    const parts = store.isText(item) ? [store.json.limits.characters, 'characters']
        : store.isBytes(item) ? [value.length / 2, 'bytes']
        : [value.length, store.layout.has(item) ? 'blocks' : 'elements'];
    const page = name === undefined ? 'The page' : `Of ${brief(name, 60)} the page`;
    return make('p', { class: 'say no' }, `${page} holds the first ${counted(parts[0])} ${parts[1]} of ` +
        `${counted(store.cut.get(item))}: made with --all it holds all.`);
}

function drawPlace(place) {
    return make('td', { class: 'end soft' }, counted(place));
}

function drawCell(isText, text, ...more) {
    return make('td', { class: 'value ' + (isText ? 'string' : 'end number') }, seen(text), more);
}

/** A table of numbers: a row for each element, or each vector. */
function drawNumbers(store, item) {
    const elements = store.elements(item);
    const components = store.components(item);
    const unit = store.unit(item);
    const names = components > 1 ? kAxes.slice(0, components) : ['Value'];
    const heads = names.map((name) => drawHead(unit ? `${name} (${unit})` : name, true));
    return drawTable([drawHead('#', true), ...heads],
        places(elements.length / components), 'rows', (row) => [drawPlace(row),
            elements.slice(row * components, (row + 1) * components).map((each) => drawCell(false, numberText(each)))]);
}

/** Matrices, each as its rows. */
function drawMatrices(store, item) {
    const elements = store.elements(item);
    const side = Math.sqrt(store.components(item));
    const box = make('div', { class: 'grid' });
    const cell = (each) => make('td', { class: 'matrix number' }, seen(numberText(each)));
    const more = inSteps(box, places(elements.length / (side * side)), 10, (index) => {
        const one = elements.slice(index * side * side, (index + 1) * side * side);
        return make('table', { 'aria-label': 'Matrix ' + counted(index) }, places(one.length / side).map((row) =>
            make('tr', {}, one.slice(row * side, (row + 1) * side).map(cell))));
    }, 'matrices');
    return [box, more];
}

/** Bytes, sixteen a line, with the characters that they may be; a part of the lines at a time. */
function drawBytes(hex) {
    const line = (row) => {
        const pairs = hex.slice(row * 32, row * 32 + 32).match(/../g) ?? [];
        const text = pairs.map((pair) => String.fromCharCode(parseInt(pair, 16)).replace(/[^ -~]/, '.')).join('');
        const place = (row * 16).toString(16).padStart(6, '0');
        return (row ? '\n' : '') + place + '  ' + pairs.join(' ').padEnd(49) + text;
    };
    const box = make('pre', { class: 'text string' });
    return [box, inSteps(box, places(hex.length / 32), kRowStep, line, 'lines')];
}

/** A struct that is laid out: a row for each block, a column for each field. */
function drawBlocks(store, item) {
    const fields = store.json.layouts[store.layout.get(item)];
    const heads = fields.map(([name, kind]) => make('th', { scope: 'col', title: kind }, brief(name, 100)));
    const text = (field) => shortened(Array.isArray(field) ? field.map(numberText).join(', ') : numberText(field), 400);
    return drawTable([drawHead('#', true), ...heads], store.elements(item), 'blocks',
        (block, place) => [drawPlace(place), block.map((field) => make('td', { class: 'value' }, seen(text(field))))]);
}

/** Whether a value is shown as one number, or one vector. */
function isSingle(store, item) {
    const components = store.components(item);
    const isNumber = !store.isText(item) && !store.isBytes(item) && !store.layout.has(item);
    return isNumber && components <= 4 && store.kindName(item) !== 'matrix2x2' &&
        store.elements(item).length <= components && store.value(item) !== null;
}

/** The value of an item as large as it deserves. */
function drawValues(store, item) {
    const value = store.value(item);
    if (value === null) return store.uri(item) ? [] : [make('p', { class: 'soft' }, 'No elements.')];
    const unit = store.unit(item);
    if (isSingle(store, item)) {
        return [make('p', { class: 'value-now' }, make('span', { class: 'number' }, seen(store.line(item, 1000))),
            unit ? make('span', { class: 'unit' }, ' ' + unit) : null)];
    }
    return [make('h3', {}, 'Value'), drawCut(store, item), drawMany(store, item, unit)].flat();
}

function drawMany(store, item, unit) {
    if (store.isBytes(item)) return drawBytes(store.value(item));
    if (store.layout.has(item)) return drawBlocks(store, item);
    const elements = store.elements(item);
    if (store.isText(item)) {
        const box = make('div');
        return [box, inSteps(box, elements, 20, (text) => make('div', {}, drawText(text)), 'texts')];
    }
    const components = store.components(item);
    if (store.kindName(item).startsWith('matrix')) return drawMatrices(store, item);
    return [plotOf(elements, components, unit), drawNumbers(store, item)].flat();
}

/** What a set holds, a row for each item. */
function drawContents(store, item) {
    const children = [...store.children(item)];
    if (!children.length) return [make('p', { class: 'soft' }, 'Nothing in it.')];
    const value = (child) => (store.isSet(child) ? make('td', { class: 'soft' }, setLine(store, child))
        : make('td', { class: 'value ' + (store.isText(child) ? 'string' : 'number') }, seen(store.line(child, 80))));
    return drawTable(['Name', 'Value', 'Unit', 'Kind'].map((head) => drawHead(head)), children, 'items', (child) => [
        make('td', {}, drawGo(store, child)), value(child), make('td', { class: 'unit' }, store.unit(child)),
        make('td', { class: 'soft' }, store.kindName(child))], { class: 'wide' });
}

/** What says that a table has not room for all. */
function drawChoice(count, what, which) {
    if (count <= kColumnsMost) return null;
    return make('p', { class: 'soft' }, `${kColumnsMost} of ${counted(count)} ${what} are columns here: ${which}.`);
}

/** The arrays of a set beside each other, a row for each place in them; null where there are none. */
function drawColumns(store, item) {
    const arrays = [];
    for (const child of store.children(item)) {
        if (store.isSet(child) || store.isBytes(child) || store.layout.has(child)) continue;
        const elements = store.elements(child);
        const components = store.components(child);
        if (elements.length > components) arrays.push({ child, elements, components });
    }
    if (arrays.length < 2) return null;
    const columns = arrays.slice(0, kColumnsMost);
    const unit = (child) => (store.unit(child) ? ` (${store.unit(child)})` : '');
    const cell = ({ child, elements, components }, row) => drawCell(store.isText(child),
        shortened(elements.slice(row * components, (row + 1) * components).map(numberText).join(', '), 100));
    const rows = Math.max(...columns.map(({ elements, components }) => elements.length / components));
    const heads = columns.map(({ child }) => drawHead(drawGo(store, child), !store.isText(child), unit(child)));
    return [make('h3', {}, 'Columns'), drawChoice(arrays.length, 'arrays', 'the first'),
        columns.map(({ child }) => drawCut(store, child, store.label(child))),
        drawTable([drawHead('#', true), ...heads], places(rows), 'rows',
            (row) => [drawPlace(row), columns.map((column) => cell(column, row))], { class: 'compare' })].flat();
}

/** The names of values that several of these sets have, with the values; those that most of them have come first. */
function commonValues(store, sets) {
    const names = new Map();
    for (const set of sets.slice(0, 1000)) {
        let room = kChildrenMost;
        for (const child of store.children(set)) {
            if (--room < 0) break;
            if (store.isSet(child)) continue;
            if (names.has(store.name(child))) names.get(store.name(child)).push(child);
            else names.set(store.name(child), [child]);
        }
    }
    const common = [...names].filter(([, items]) => items.length > 1);
    return common.sort((a, b) => b[1].length - a[1].length);
}

/** A column of a comparison: what its values are called, and the unit that all that were looked at have, if they do. */
function columnOf(store, [name, items]) {
    const unit = store.unit(items[0]);
    const isMixed = items.some((each) => store.unit(each) !== unit);
    const told = isMixed ? 'mixed units' : unit;
    const head = drawHead(brief(store.label(items[0]), 60), !store.isText(items[0]),
        told ? make('div', { class: 'unit' }, told) : null);
    return { name, head, unit: isMixed ? null : unit };
}

/** The value of this name in a set, with its unit where the head of the column does not tell it. */
function drawCompared(store, set, { name, unit }) {
    const child = store.child(set, name);
    if (child < 0 || !store.shows(child) || store.isSet(child)) return drawCell(false, '');
    const isText = store.isText(child);
    const own = store.unit(child) === unit ? '' : store.unit(child) || (isText ? '' : '(no unit)');
    return drawCell(isText, store.line(child, 40), own ? make('span', { class: 'unit' }, ' ' + own) : null);
}

/** Sets that hold values of the same names beside each other, a row for each; null where they do not. */
function drawComparison(store, item) {
    const sets = [...store.children(item)].filter((child) => store.isSet(child) && store.size[child] > 0);
    const common = commonValues(store, sets);
    if (!common.length) return null;
    const columns = common.slice(0, kColumnsMost).map((each) => columnOf(store, each));
    return [make('h3', {}, 'Side by side'), drawChoice(common.length, 'values', 'those that most of these have'),
        drawTable([drawHead('Name'), ...columns.map(({ head }) => head)], sets, 'rows', (set) => [
            make('th', { scope: 'row' }, drawGo(store, set)),
            columns.map((column) => drawCompared(store, set, column))], { class: 'compare' })].flat();
}
