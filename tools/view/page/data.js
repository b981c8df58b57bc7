'use strict';

// What the page shows, as tools/view/PageData.h lays it out.

/** What an item is when it is no value; the kinds of values are numbers from 0. */
const Kind = Object.freeze({ root: -1, node: -2, group: -3, link: -4, table: -5, container: -6 });
const Flag = Object.freeze({ optional: 1, inherited: 2, hidden: 4, external: 8 });
const kTexts = new Set(['uuid', 'string', 'time', 'uri', 'version']);
const kComponents = { vector2: 2, vector3: 3, vector4: 4, matrix2x2: 4, matrix3x3: 9, matrix4x4: 16 };
const kOwnKinds = { '-1': 'store', '-2': 'node', '-3': 'group', '-4': 'link', '-5': 'table', '-6': 'container' };

/** Control characters, those that turn the direction of text among them, and such as have no shape. */
const kUnseen = new RegExp('[\\u0000-\\u001f\\u007f-\\u009f\\u00ad\\u061c\\u115f\\u1160\\u180e\\u200b-\\u200f' +
    '\\u2028-\\u202e\\u2060-\\u206f\\u3164\\ufeff\\uffa0\\ufff9-\\ufffb\\u{e0000}-\\u{e007f}]', 'gu');
const kShort = { '\n': '\\n', '\t': '\\t', '\r': '\\r' };

function escaped(one) {
    const code = one.codePointAt(0).toString(16);
    return kShort[one] ?? '\\u' + (code.length > 4 ? `{${code}}` : code.padStart(4, '0'));
}

/**
 * Text with an escape in place of each character that could hide or turn what stands beside it. Backslashes are
 * doubled: no text looks like another one with an escape in it.
 */
function seen(text) {
    return text.replaceAll('\\', '\\\\').replace(kUnseen, escaped);
}

/** The same for a text of several lines, which stay lines, and with backslashes as they are. */
function seenLines(text) {
    return text.replace(kUnseen, (one) => (one === '\n' || one === '\t' ? one : escaped(one)));
}

/** The first `most` characters, with an ellipsis for the others; no character is cut in two. */
function shortened(text, most) {
    if (text.length <= most) return text;
    const end = /[\ud800-\udbff]/.test(text[most - 1]) ? most - 1 : most;
    return text.slice(0, end) + '\u2026';
}

/** A text of any kind as it may stand in a line. */
function brief(text, most) {
    return seen(shortened(text, most));
}

/** 12345 as 12,345. */
function counted(number) {
    return String(number).replace(/\B(?=(\d{3})+$)/g, ',');
}

function plural(number, one, many) {
    return counted(number) + ' ' + (number === 1 ? one : many);
}

/** A number, a truth value, or a number that came as text, as text. */
function numberText(value) {
    return Object.is(value, -0) ? '-0' : String(value);
}

/** A map from the first of each row to what follows it, as a list of rows where `many`. */
function byItem(rows, many) {
    const map = new Map();
    for (const [item, ...rest] of rows ?? []) {
        if (!many) map.set(item, rest[0]);
        else if (map.has(item)) map.get(item).push(rest);
        else map.set(item, [rest]);
    }
    return map;
}

/** The items of the store: numbers from 0, the root, in the order of a walk that shows a set before what it holds. */
class Store {
    constructor(json) {
        this.json = json;
        this.count = json.level.length;
        this.showsHidden = false;
        this.language = '';
        this.link(json.level);
        for (const name of ['base', 'target', 'uri', 'schema', 'locale']) {
            const map = byItem(json[name]);
            this[name] = (item) => (map.has(item) ? json.strings[map.get(item)] : '');
        }
        this.cut = byItem(json.cut);
        this.layout = byItem(json.layout);
        this.texts = byItem(json.texts, true);
        this.defaults = byItem(json.defaults, true);
        this.findings = new Map();
        json.findings.forEach((finding, index) => {
            if (finding[0] < 0) return;
            if (!this.findings.has(finding[0])) this.findings.set(finding[0], []);
            this.findings.get(finding[0]).push(index);
        });
        this.conformance = byItem(json.conformance, true);
        this.given = json.schemas && new Set(json.schemas.map((place) => json.strings[place]));
        this.byName = new Map();
        this.place();
    }

    /** Finds out where each item stands: what holds it, and behind which item what it holds ends. */
    link(levels) {
        this.parent = new Int32Array(this.count).fill(-1);
        this.end = new Int32Array(this.count).fill(this.count);
        const open = [];
        levels.forEach((level, item) => {
            while (open.length > level) this.end[open.pop()] = item;
            if (open.length) this.parent[item] = open[open.length - 1];
            open.push(item);
        });
    }

    /**
     * Counts anew what is shown: how many items a set has, the place of each among them, from 1, and whether an item is
     * shown with all that it stands in.
     */
    place() {
        this.size = new Int32Array(this.count);
        this.position = new Int32Array(this.count);
        this.inSight = new Uint8Array(this.count).fill(1);
        for (let item = 1; item < this.count; ++item) {
            const owner = this.parent[item];
            if (this.shows(item)) this.position[item] = ++this.size[owner];
            if (!this.shows(item) || !this.inSight[owner]) this.inSight[item] = 0;
        }
    }

    shows(item) {
        return this.showsHidden || !(this.flags(item) & Flag.hidden);
    }

    /** The items that a set holds, without those that are not shown. */
    *children(item) {
        for (let child = item + 1; child < this.end[item]; child = this.end[child]) if (this.shows(child)) yield child;
    }

    level(item) { return this.json.level[item]; }
    kind(item) { return this.json.kind[item]; }
    flags(item) { return this.json.flags[item]; }
    name(item) { return this.json.strings[this.json.name[item]]; }
    unit(item) { return seen(this.json.strings[this.json.unit[item]]); }
    value(item) { return this.json.value[item]; }
    isSet(item) { return this.kind(item) < 0; }
    isContainer(item) { return this.isSet(item) && this.kind(item) !== Kind.table && item !== 0; }

    kindName(item) {
        const kind = this.kind(item);
        return kOwnKinds[kind] ?? this.json.kinds[kind] ?? 'unknown kind ' + kind;
    }

    /** The name in the chosen language; the plain one where there is none. */
    label(item) {
        if (this.language) {
            for (const [locale, text] of this.texts.get(item) ?? []) {
                if (this.json.strings[locale] === this.language) return text;
            }
        }
        return this.name(item);
    }

    languages() {
        const all = new Set();
        for (const rows of this.texts.values()) for (const [locale] of rows) all.add(this.json.strings[locale]);
        return [...all].sort();
    }

    /** The items from the top down to this one, without the root. */
    chain(item) {
        const chain = [];
        for (; item > 0; item = this.parent[item]) chain.push(item);
        return chain.reverse();
    }

    pathText(item) {
        return this.chain(item).map((each) => this.name(each)).join('.');
    }

    /** The first item of a name in a set; -1 for none. */
    child(set, name) {
        if (!this.byName.has(set)) {
            const names = new Map();
            for (let child = set + 1; child < this.end[set]; child = this.end[child]) {
                if (!names.has(this.name(child))) names.set(this.name(child), child);
            }
            this.byName.set(set, names);
        }
        return this.byName.get(set).get(name) ?? -1;
    }

    /** The item that names lead to from the root; -1 for none. */
    at(names) {
        return names.reduce((item, name) => (item < 0 ? -1 : this.child(item, name)), 0);
    }

    /** The container that a link leads to; -1 where there is none here. */
    targetOf(link) {
        const found = this.at(this.target(link).split('.'));
        return found > 0 && this.isContainer(found) ? found : -1;
    }

    /** The parts of an item's place in the address, and back. Names may hold dots there. */
    address(item) {
        return this.chain(item).map((each) => encodeURIComponent(this.name(each).toWellFormed?.() ?? this.name(each))
            .replaceAll('.', '%2E')).join('.');
    }

    atAddress(address) {
        try {
            return address ? this.at(address.split('.').map(decodeURIComponent)) : 0;
        } catch {
            return -1;
        }
    }

    /** Of the schemas that an item inherits from, those of which nothing is known. */
    unknownSchemas(item) {
        return this.given ? this.base(item).split(';').filter((uri) => uri && !this.given.has(uri)) : [];
    }

    isText(item) { return kTexts.has(this.kindName(item)); }
    isBytes(item) { return typeof this.value(item) === 'string' && ['binary', 'struct'].includes(this.kindName(item)); }
    components(item) { return kComponents[this.kindName(item)] ?? 1; }

    /** The elements of a value as a list: numbers, texts, or blocks of a struct that is laid out. */
    elements(item) {
        const value = this.value(item);
        if (value === null) return [];
        return Array.isArray(value) ? value : [value];
    }

    /** How many elements it has in the store, be they in the page or not. */
    total(item) {
        if (this.cut.has(item)) return this.cut.get(item);
        const value = this.value(item);
        return this.isBytes(item) ? value.length / 2 : this.elements(item).length;
    }

    /** A value in one line of at most about `most` characters; empty for a set. */
    line(item, most) {
        const elsewhere = this.uri(item);
        if (elsewhere) return '\u2192 ' + shortened(elsewhere, most);
        const value = this.value(item);
        if (value === null) return '';
        if (this.isBytes(item)) {
            return shortened(value, Math.min(most, 48)) + ` (${plural(this.total(item), 'byte', 'bytes')})`;
        }
        if (this.layout.has(item)) return plural(value.length, 'block', 'blocks') + ' of ' + this.schema(item);
        return this.isText(item) ? this.textLine(item, most) : this.numberLine(item, most);
    }

    textLine(item, most) {
        const value = this.value(item);
        if (!Array.isArray(value)) return shortened(value, most);
        let line = '';
        for (const text of value) {
            line += (line ? ', ' : '') + '"' + shortened(text, most) + '"';
            if (line.length > most) break;
        }
        return shortened(line, most);
    }

    numberLine(item, most) {
        const elements = this.elements(item);
        const components = this.components(item);
        let line = '';
        for (let i = 0; i < elements.length; ++i) {
            if (line.length > most) return line + ' \u2026 (' + counted(this.total(item)) + ')';
            if (components > 1 && i % components === 0) line += (i ? ' ' : '') + '(';
            else if (i) line += ', ';
            line += numberText(elements[i]);
            if (components > 1 && (i % components === components - 1 || i === elements.length - 1)) line += ')';
        }
        return elements.length < this.total(item) ? line + ' \u2026 (' + counted(this.total(item)) + ')' : line;
    }

    /** All that a search looks at, in small letters. */
    haystack(item) {
        const value = this.value(item);
        const parts = [this.name(item), this.unit(item), this.uri(item), this.target(item), this.base(item),
            this.schema(item)];
        for (const [, text] of this.texts.get(item) ?? []) parts.push(text);
        if (Array.isArray(value)) parts.push(value.join('\n'));
        else if (value !== null && !this.isBytes(item)) parts.push(numberText(value));
        return parts.join('\n').toLowerCase();
    }
}
