// Stores to show, as the tool would write them into a page (tools/view/PageData.h).

export const kKinds = ['no value', 'binary', 'uuid', 'string', 'time', 'uri', 'version', 'bool', 'int8', 'uint8',
    'int16', 'uint16', 'int32', 'uint32', 'int64', 'uint64', 'scalar', 'double', 'vector2', 'vector3', 'vector4',
    'matrix2x2', 'matrix3x3', 'matrix4x4', 'struct'];
const kSets = { root: -1, node: -2, group: -3, link: -4, table: -5, container: -6 };

/** Gathers items in the order of a walk: a set, then what it holds, one level deeper. */
export class Data {
    constructor(name, version = 1) {
        this.pool = new Map();
        this.json = { store: name + '.lvp', version, limits: { elements: 10000, characters: 100000 }, kinds: kKinds,
            strings: [], level: [], kind: [], name: [], flags: [], unit: [], value: [],
            base: [], target: [], uri: [], schema: [], locale: [], texts: [], cut: [], defaults: [],
            layouts: [], layout: [],
            schemas: null, conformance: null,
            findings: [], severities: { note: 0, stale: 0, damage: 0, fatal: 0 },
            unattached: { records: 0, bytes: 0 } };
        this.text('');
        this.add(0, 'root', name);
    }

    text(text) {
        if (!this.pool.has(text)) {
            this.pool.set(text, this.json.strings.length);
            this.json.strings.push(text);
        }
        return this.pool.get(text);
    }

    /** Adds an item; `kind` is the name of its kind. Of the rest: value, unit, flags, base, target, uri, ..., texts. */
    add(level, kind, name, { value = null, unit = '', flags = 0, texts = {}, cut, ...named } = {}) {
        const json = this.json;
        const item = json.level.length;
        json.level.push(level);
        json.kind.push(kSets[kind] ?? kKinds.indexOf(kind));
        json.name.push(this.text(name));
        json.flags.push(flags);
        json.unit.push(this.text(unit));
        json.value.push(value);
        for (const [key, text] of Object.entries(named)) json[key].push([item, this.text(text)]);
        for (const [locale, text] of Object.entries(texts)) json.texts.push([item, this.text(locale), text]);
        if (cut) json.cut.push([item, cut]);
        return item;
    }

    /** The JSON as it stands in a page: nothing in it can end the element that it stands in. */
    toString() {
        return JSON.stringify(this.json).replace(/[<>&\u2028\u2029]/g,
            (one) => '\\u' + one.charCodeAt(0).toString(16).padStart(4, '0'));
    }
}

/** A store of `count` items: groups of nodes of values, and one group that holds a tenth of all. */
export function large(count) {
    const data = new Data('large');
    const left = () => count - (data.json.level.length - 1);
    data.add(1, 'group', 'wide');
    for (let i = 0; i < count / 10; ++i) data.add(2, 'int32', 'value' + i, { value: i });
    for (let group = 0; left() > 0; ++group) {
        data.add(1, 'group', 'group' + group);
        for (let node = 0; node < 100 && left() > 0; ++node) {
            data.add(2, 'node', 'node' + node);
            for (let value = 0; value < 8 && left() > 0; ++value) {
                data.add(3, 'double', 'property' + value, { value: group + node / 128 + value, unit: 'Meter' });
            }
        }
    }
    data.add(1, 'string', 'needle', { value: 'in the haystack' });
    return data;
}

/** A store that has one of everything. */
export function varied() {
    const data = new Data('varied', 3);
    data.add(1, 'group', 'Metals', { texts: { 'en-us': 'All metals', 'de-de': 'Alle Metalle' } });
    const kDensity = 'KilogramPerCubicMeter';
    const steelNames = { 'de-de': 'Stahl', 'en-us': 'Structural steel' };
    data.add(2, 'node', 'Steel', { base: 'Mechanical;Thermal', texts: steelNames });
    data.add(3, 'double', 'Density', { value: 7850, unit: kDensity, flags: 2, texts: { 'de-de': 'Dichte' } });
    data.add(3, 'double', 'PoissonRatio', { value: 0.3, flags: 6 });
    data.add(3, 'int64', 'Serial', { value: '9007199254740993' });
    data.add(3, 'double', 'Limits', { value: ['NaN', 'Infinity', '-Infinity', -0] });
    data.add(3, 'string', 'Note', { value: 'plain\nin two lines', locale: 'en-us' });
    data.add(2, 'node', 'Brass', { base: 'Mechanical' });
    data.add(3, 'double', 'Density', { value: 8500, unit: 'KilogramPerCubicMeter' });
    data.add(2, 'link', 'Favourite', { target: 'Metals.Steel' });
    data.add(2, 'link', 'Nowhere', { target: 'Metals.Gone' });
    data.add(1, 'group', 'Curves');
    data.add(2, 'table', 'Stress');
    const curve = Array.from({ length: 250 }, (_, i) => i);
    data.add(3, 'double', 'strain', { value: curve.map((i) => i / 1000) });
    const stress = curve.map((i) => Math.round(500 * (1 - Math.exp(-i / 40))));
    data.add(3, 'double', 'stress', { value: stress, unit: 'MegaPascal' });
    data.add(2, 'double', 'wave', { value: curve.map((i) => Math.sin(i / 20)), unit: 'Meter', cut: 123456 });
    data.add(2, 'vector2', 'outline', { value: [0, 0, 4, 0, 4, 3, 0, 3, 0, 0], unit: 'Meter' });
    data.add(2, 'vector3', 'place', { value: [1, 2, 3] });
    data.add(2, 'matrix3x3', 'turn', { value: [0, -1, 0, 1, 0, 0, 0, 0, 1] });
    data.add(2, 'bool', 'closed', { value: true });
    data.add(2, 'binary', 'bytes', { value: '48656c6c6f00ff' });
    data.add(2, 'string', 'empty');
    data.add(2, 'string', 'list', { value: ['one', 'two', ''] });
    data.add(2, 'string', 'story', { value: 'All work and no play. '.repeat(400) });
    data.add(2, 'double', 'elsewhere', { uri: 'https://example.org/values', flags: 8 });
    const pose = data.add(2, 'struct', 'poses', { value: [[[0, 0, 0.5], 0], [[0.25, 0, 0.5], '400']], schema: 'Pose' });
    data.json.layouts.push([['position', 'double'], ['time', 'int64']]);
    data.json.layout.push([pose, 0]);
    data.add(1, 'table', 'Mechanical');
    data.add(2, 'double', 'Density', { value: 0, unit: 'KilogramPerCubicMeter' });
    data.json.defaults.push([data.json.level.length - 2, data.text('KilogramPerCubicMeter'), kKinds.indexOf('double')]);
    const steel = 2;
    const brass = 8;
    data.json.schemas = [data.text('Mechanical')];
    data.json.conformance = [[steel, data.text('Mechanical'), ''],
        [brass, data.text('Mechanical'), "Mechanical: 'PoissonRatio' (double) is missing"]];
    data.json.findings = [
        [brass, 'stale', 'live.count', 'Metals.Brass', 'it is counted as open 2 times', 'the count becomes 0'],
        [-1, 'note', 'record.rest', '', 'bytes stand behind the last section', '']];
    data.json.severities = { note: 1, stale: 1, damage: 0, fatal: 0 };
    data.json.unattached = { records: 1234, bytes: 56789 };
    return data;
}

const kAlert = '<img src=x onerror="document.title=\'taken\';alert(1)">';

/** A store whose every name and text would like to be more than text. */
export function hostile() {
    const data = new Data(kAlert);
    const texts = ['</script><script>alert(1)</script>', '<!--<script>', ']]>', kAlert, '\u202egnp.exe', '\u2028\u2029',
        '\u0000\u001b[31m', '"\'`;alert(1)//', '{{7*7}}', '__proto__', 'constructor', '\ud800', '@DATA@',
        'x'.repeat(300),
        '<svg onload=alert(1)>', 'javascript:alert(1)', '\u2066\u200f\u061c', 'a.b.c', '', '&lt;b&gt;&amp;'];
    for (const text of texts) {
        data.add(1, 'group', text, { base: text, texts: { [text]: text, 'en-us': text } });
        data.add(2, 'string', text, { value: text, unit: text, locale: text });
        data.add(2, 'string', text + '2', { value: [text, text] });
        data.add(2, 'uri', text + '3', { uri: text, flags: 8 });
        data.add(2, 'struct', text + '4', { value: '00ff', schema: text });
        data.add(2, 'link', text + '5', { target: text });
    }
    data.json.schemas = texts.map((text) => data.text(text));
    data.json.conformance = texts.map((text, i) => [1 + 6 * i, data.text(text), text]);
    data.json.findings = texts.map((text, i) => [i % 2 ? 1 + 6 * i : -1, 'damage', 'set.name', text, text, text]);
    data.json.severities.damage = texts.length;
    return data;
}
