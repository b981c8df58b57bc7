
// The panel beside the tree: the chosen item, schemas, findings, and what there is to say of the page.

const kFlagWords = [
    [Flag.hidden, 'hidden default', 'As it came from a schema: nobody has set it yet'],
    [Flag.inherited, 'inherited', 'It came from a schema'],
    [Flag.optional, 'optional', ''],
    [Flag.external, 'external', 'A URI stands in place of the values'],
];

function drawPath(store, item) {
    const chain = store.chain(store.parent[item]);
    const shown = chain.length > 30 ? [...chain.slice(0, 15), -1, ...chain.slice(-14)] : chain;
    return make('nav', { 'aria-label': 'Path' }, make('ol', { class: 'path' }, [0, ...shown].map((each) =>
        make('li', {}, each < 0 ? '\u2026' : drawGo(store, each)))));
}

function drawChips(store, item) {
    const flags = store.flags(item);
    return make('div', { class: 'chips' },
        make('span', { class: 'chip' }, store.kindName(item)),
        kFlagWords.map(([flag, word, title]) => (flags & flag ? make('span', { class: 'chip', title }, word) : null)),
        (store.conformance.get(item) ?? []).map(([uris, lack]) => drawVerdict(store.json.strings[uris], lack)),
        drawUnknown(store.unknownSchemas(item)));
}

function drawVerdict(uris, difference) {
    const words = difference ? 'does not conform to ' : 'conforms to ';
    return make('span', { class: 'chip ' + (difference ? 'no' : 'yes') }, words + brief(uris, 100));
}

function drawUnknown(uris) {
    if (!uris.length) return null;
    return make('span', { class: 'chip', title: 'Not among the schemas that were given' },
        'nothing known of ' + brief(uris.join(';'), 100));
}

function drawTarget(store, item) {
    const target = store.targetOf(item);
    const path = store.target(item);
    if (target >= 0) return [drawGo(store, target, path)];
    const why = store.at(path.split('.')) > 0 ? ' (no container there)' : ' (not in this store)';
    return [brief(path, 400), make('span', { class: 'soft' }, why)];
}

/** URIs of schemas; one that a table of this store has leads there. */
function drawUris(store, uris) {
    return uris.split(';').filter((uri) => uri).flatMap((uri, index) => {
        const table = store.at(uri.split('.'));
        const isTable = table > 0 && store.kind(table) === Kind.table;
        return [index ? '; ' : '', isTable ? drawGo(store, table, uri) : brief(uri, 400)];
    });
}

/** How many elements a value has in the store. Of texts that were cut only those in the page can be counted. */
function countOf(store, item) {
    if (!store.isText(item)) return counted(store.total(item));
    return counted(store.elements(item).length) + (store.cut.has(item) ? ' in this page' : '');
}

function drawFacts(store, item) {
    const facts = [];
    const add = (name, value) => facts.push(make('dt', {}, name), make('dd', {}, value));
    if (item === 0) add('Version', String(store.json.version));
    if (store.label(item) !== store.name(item)) add('Name', brief(store.name(item), 400));
    if (Array.isArray(store.value(item)) || store.isBytes(item)) {
        add(store.isText(item) ? 'Texts' : store.layout.has(item) ? 'Blocks' : 'Elements',
            countOf(store, item));
    }
    if (store.unit(item)) add('Unit', store.unit(item));
    if (store.target(item)) add('Leads to', drawTarget(store, item));
    if (store.base(item)) add(store.isSet(item) ? 'Inherits from' : 'Schema', drawUris(store, store.base(item)));
    if (store.schema(item)) add('Laid out by', drawUris(store, store.schema(item)));
    if (store.uri(item)) add('Value at', brief(store.uri(item), 2000));
    if (store.locale(item)) add('Value written in', brief(store.locale(item), 100));
    for (const [unit, kind] of store.defaults.get(item) ?? []) {
        add('Default', `${store.json.kinds[kind] ?? kind} in ${store.json.strings[unit]}`);
    }
    return facts.length ? make('dl', { class: 'facts' }, facts) : null;
}

function drawNames(store, item) {
    const texts = store.texts.get(item);
    if (!texts) return null;
    const rows = texts.map(([locale, text]) => [store.json.strings[locale], text]);
    return [make('h3', {}, 'Names by language'), drawTable([], rows, 'names', ([locale, text]) => [
        make('th', { scope: 'row' }, brief(locale, 60)), make('td', { lang: languageOf(locale) }, brief(text, 2000))])];
}

function drawComplaints(store, item) {
    const findings = (store.findings.get(item) ?? []).map((index) => store.json.findings[index]);
    const differences = (store.conformance.get(item) ?? []).filter(([, difference]) => difference);
    if (!findings.length && !differences.length) return null;
    return [make('h3', {}, 'What is amiss'),
        differences.map(([, difference]) => make('p', { class: 'say no' }, seenLines(shortened(difference, 2000)))),
        findings.map((finding) => drawFinding(store, finding, false))];
}

function drawFinding(store, [item, severity, code, path, found, repair], leads) {
    return make('div', { class: 'found' },
        make('span', { class: 'chip ' + severity }, severity),
        leads && item >= 0 ? drawGo(store, item, item ? store.pathText(item) : store.label(0)) : null,
        leads && item < 0 && path ? seen(path) : null,
        make('div', {}, brief(found, 2000)),
        make('div', { class: 'soft' }, code + (repair ? '; a repair: ' + brief(repair, 2000) : '')));
}

function drawItem(store, item) {
    const label = store.label(item);
    const lang = label === store.name(item) ? null : languageOf(store.language);
    return [item ? drawPath(store, item) : null, make('h2', { lang }, brief(label, 2000) || '(no name)'),
        drawChips(store, item), drawFacts(store, item), drawComplaints(store, item),
        store.isSet(item) ? drawSet(store, item) : drawValues(store, item),
        drawNames(store, item)].flat(3);
}

function drawSet(store, item) {
    return [drawColumns(store, item), drawComparison(store, item),
        make('h3', {}, `Holds ${plural(store.size[item], 'item', 'items')}`), drawContents(store, item)];
}

/** For each URI the items that inherit from it. */
function heirs(store) {
    const all = new Map();
    for (let item = 0; item < store.count; ++item) {
        for (const uri of new Set((store.base(item) + ';' + store.schema(item)).split(';'))) {
            if (!uri) continue;
            if (!all.has(uri)) all.set(uri, []);
            all.get(uri).push(item);
        }
    }
    return all;
}

/** A list of items that lead there, some words behind each. */
function drawItems(store, items, words) {
    const list = make('ul');
    const more = inSteps(list, items, kRowStep, (item) => make('li', {},
        drawGo(store, item, item ? store.pathText(item) : store.label(0)), words ? words(item) : null), 'items');
    return [list, more];
}

function drawSchemas(store) {
    const all = heirs(store);
    const unlike = store.json.conformance?.filter(([, , difference]) => difference) ?? [];
    const box = make('div');
    const more = inSteps(box, [...all], 20, ([uri, items]) => make('section', {},
        make('h3', {}, drawUris(store, uri), sourceOf(store, uri)), drawItems(store, items)), 'schemas');
    return [make('h2', {}, 'Schemas'), drawConformance(store, unlike),
        all.size ? [box, more] : make('p', { class: 'soft' }, 'Nothing here names a schema.')].flat(2);
}

function sourceOf(store, uri) {
    return !store.given || store.given.has(uri) ? null : ' (not among the schemas that were given)';
}

function drawConformance(store, unlike) {
    if (!store.json.conformance) {
        return make('p', { class: 'soft' },
            'Whether items conform was not looked at: the page was made without --schemas.');
    }
    const looked = store.json.conformance.length;
    const verdict = looked && !unlike.length ? ': all conform' : '';
    const all = plural(store.json.base.length, 'item that inherits', 'items that inherit');
    const sentence = make('p', {},
        `Of ${all}, ${counted(looked)} ${looked === 1 ? 'was' : 'were'} looked at${verdict}.`);
    if (!unlike.length) return sentence;
    const list = make('ul');
    const more = inSteps(list, unlike, kRowStep, ([item, , difference]) => make('li', { class: 'found' },
        drawGo(store, item, store.pathText(item)),
        make('div', { class: 'say no' }, seenLines(shortened(difference, 2000)))), 'items');
    const head = make('h3', {}, `${plural(unlike.length, 'item does', 'items do')} not conform`);
    return [sentence, head, list, more];
}

/** One line for all notes of a rule that are about no item in sight. */
function drawFolded(store, findings) {
    const byCode = new Map();
    for (const finding of findings) {
        if (!byCode.has(finding[2])) byCode.set(finding[2], []);
        byCode.get(finding[2]).push(finding);
    }
    const chip = () => make('span', { class: 'chip note' }, 'note');
    return [...byCode].map(([code, all]) => make('div', { class: 'found' }, chip(),
        `${counted(all.length)} \u00d7 ${code}`, make('div', {}, brief(all[0][4], 2000))));
}

/** One line for what nothing reaches, be it a record or a million. */
function drawUnattached({ records, bytes }) {
    if (!records) return null;
    return make('div', { class: 'found' }, make('span', { class: 'chip note' }, 'note'),
        `${plural(records, 'record', 'records')} of ${plural(bytes, 'byte', 'bytes')}, which nothing reaches`,
        make('div', { class: 'soft' }, 'live.unattached'));
}

/** How many findings there are, those of harm first. */
function findingsOf(store) {
    const { note, stale, damage, fatal } = store.json.severities;
    return { harm: stale + damage + fatal, total: note + stale + damage + fatal };
}

function drawFindings(store) {
    const { harm, total } = findingsOf(store);
    const findings = store.json.findings;
    const isFolded = ([item, severity]) => item < 0 && severity === 'note';
    const list = make('div');
    const more = inSteps(list, findings.filter((each) => !isFolded(each)), kRowStep,
        (finding) => drawFinding(store, finding, true), 'findings');
    const told = total > findings.length ? `; the first ${counted(findings.length)} of them are here` : '';
    const sentence = !total ? 'The store is in order'
        : plural(total, 'finding', 'findings') + (harm ? '' : ', notes only: nothing is wrong') + told;
    return [make('h2', {}, 'Findings of the checker'), make('p', { class: 'soft' }, sentence + '.'), list, more,
        drawFolded(store, findings.filter(isFolded)), drawUnattached(store.json.unattached)].flat();
}

const kKeys = [
    ['\u2191 \u2193', 'the item above, below'],
    ['\u2192', 'open, or the first item in it'],
    ['\u2190', 'close, or what it stands in'],
    ['Enter, space', 'follow a link, open or close'],
    ['*', 'open all beside it'],
    ['Home, End', 'the first, the last row'],
    ['Page up, Page down', 'as many rows as are in sight'],
    ['a letter', 'the next name that begins so'],
    ['/', 'search; \u2193 and Enter choose, Esc ends it'],
];

/** How many items of each kind there are, the most first. */
function kindsOf(store) {
    const kinds = new Map();
    for (let item = 1; item < store.count; ++item) {
        kinds.set(store.kindName(item), (kinds.get(store.kindName(item)) ?? 0) + 1);
    }
    return [...kinds].sort((a, b) => b[1] - a[1]).map(([kind, count]) => [kind, counted(count)]);
}

function drawAbout(store) {
    const { elements, characters } = store.json.limits;
    const rows = (all) => drawTable([], all, 'rows', ([head, value]) => [
        make('th', { scope: 'row' }, head), make('td', {}, value)]);
    return [make('h2', {}, 'About this page'),
        make('p', {}, `It shows ${seen(store.json.store)} as it was when the page was made, and asks no network for ` +
            'anything.'),
        make('p', {}, 'All that it shows is in the file itself, hidden defaults and findings too: ' +
            'who gets the page gets the data.'),
        make('p', { class: 'soft' }, elements
            ? `Of a value it holds at most ${counted(elements)} elements, of a text ${counted(characters)} characters.`
            : 'Values are in it as a whole.'),
        make('h3', {}, plural(store.count - 1, 'item', 'items')), rows(kindsOf(store)),
        make('h3', {}, 'Keys'), rows(kKeys)].flat();
}

/** The views behind the tabs. */
class Panel {
    constructor(tabs, panel, store) {
        this.panel = panel;
        this.store = store;
        this.item = 0;
        this.views = {
            item: ['Item', () => drawItem(store, this.item)],
            schemas: ['Schemas', () => drawSchemas(store), store.json.conformance?.filter((row) => row[2]).length],
            findings: ['Findings', () => drawFindings(store), findingsOf(store).harm],
            about: ['About', () => drawAbout(store)],
        };
        this.buttons = Object.entries(this.views).map(([view, [title, , number]]) => make('button', {
            type: 'button', id: 'tab-' + view, role: 'tab', 'data-view': view, 'aria-controls': panel.id,
            click: () => this.show(view),
        }, title, number ? ' ' : null, number ? make('span', { class: 'number-of' }, counted(number)) : null));
        tabs.append(...this.buttons);
        tabs.addEventListener('keydown', (event) => this.key(event));
        this.show('item');
    }

    show(view) {
        this.view = view;
        for (const button of this.buttons) {
            const chosen = button.dataset.view === view;
            button.setAttribute('aria-selected', String(chosen));
            button.tabIndex = chosen ? 0 : -1;
        }
        this.panel.setAttribute('aria-labelledby', 'tab-' + view);
        this.draw();
    }

    draw() {
        this.panel.replaceChildren(...this.views[this.view][1]().filter((each) => each));
        this.panel.scrollTop = 0;
    }

    showItem(item) {
        this.item = item;
        this.show('item');
    }

    /** Has an item behind the first tab, and leaves the tab that is open. */
    lookAt(item) {
        this.item = item;
        this.draw();
    }

    key(event) {
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        if (!step) return;
        const at = this.buttons.findIndex((button) => button.dataset.view === this.view);
        const next = this.buttons[(at + step + this.buttons.length) % this.buttons.length];
        this.show(next.dataset.view);
        next.focus();
        event.preventDefault();
    }
}
