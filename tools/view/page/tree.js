
// The tree: its open sets, its rows, its keys.

const kIndent = 14;      // pixels a level
const kDeepest = 16;     // levels that are indented
const kTypeAhead = 800;  // milliseconds between two letters of a name

class Tree {
    /** `choose(item)` is called when another item is chosen, `follow(item)` when one is entered. */
    constructor(frame, store, { choose, follow }) {
        this.frame = frame;
        this.store = store;
        this.choose = choose;
        this.follow = follow;
        this.open = new Uint8Array(store.count);
        this.chosen = 0;
        this.typed = { text: '', at: 0 };
        this.sight = new Sight(frame, (first, last) => this.drawRows(first, last));
        this.begin();
        frame.addEventListener('keydown', (event) => this.key(event));
        frame.addEventListener('click', (event) => this.click(event));
    }

    /** Opens the root, and what it holds as long as that is little. */
    begin() {
        this.open[0] = 1;
        for (let room = 40, set = 0; set >= 0 && room > 0;) {
            const sets = [...this.store.children(set)].filter((item) => this.store.isSet(item));
            room -= this.store.size[set];
            set = sets.length === 1 ? sets[0] : -1;
            if (set > 0) this.open[set] = 1;
        }
        this.build();
    }

    /** Lists the rows anew: all items whose sets are open. */
    build() {
        const { store, open } = this;
        const rows = [];
        for (let item = 0; item < store.count;) {
            if (item > 0 && !store.shows(item)) {
                item = store.end[item];
                continue;
            }
            rows.push(item);
            item = open[item] ? item + 1 : store.end[item];
        }
        this.rows = rows;
        this.sight.show(rows.length);
    }

    /** The row of an item; -1 where it is not shown. Rows are in the order of items. */
    rowOf(item) {
        let low = 0;
        let high = this.rows.length;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (this.rows[middle] < item) low = middle + 1;
            else high = middle;
        }
        return this.rows[low] === item ? low : -1;
    }

    canOpen(item) { return this.store.isSet(item) && this.store.size[item] > 0; }

    /** Rows within each other as the items are; one whose set is out of sight stands at the outside. */
    drawRows(first, last) {
        const top = [];
        const sets = [];
        for (const item of this.rows.slice(first, last)) {
            const element = this.drawItem(item);
            while (sets.length && this.store.end[sets.at(-1).item] <= item) sets.pop();
            if (sets.length) groupOf(sets.at(-1)).append(element);
            else top.push(element);
            if (this.open[item]) sets.push({ item, element, group: null });
        }
        return top;
    }

    drawItem(item) {
        const { store } = this;
        const opens = this.canOpen(item);
        return make('li', {
            id: 'item-' + item,
            role: 'treeitem',
            'aria-level': store.level(item) + 1,
            'aria-posinset': item ? store.position[item] : 1,
            'aria-setsize': item ? store.size[store.parent[item]] : 1,
            'aria-expanded': opens ? String(this.open[item] === 1) : null,
            'aria-selected': String(item === this.chosen),
            'aria-label': spoken(store, item),
        }, this.drawLine(item, opens));
    }

    drawLine(item, opens) {
        const { store } = this;
        const line = drawItemLine(store, item);
        const mark = opens ? icon(this.open[item] ? 'open' : 'closed') : null;
        line.firstChild.prepend(make('span', { class: 'twist' }, mark));
        line.firstChild.style.paddingLeft = 6 + kIndent * Math.min(store.level(item), kDeepest) + 'px';
        return line;
    }

    itemOf(event) {
        const line = event.target.closest('.line');
        return line ? Number(line.dataset.item) : -1;
    }

    click(event) {
        const item = this.itemOf(event);
        if (item < 0) return;
        const toggles = event.target.closest('.twist') && this.canOpen(item);
        if (toggles) this.toggle(item);
        this.select(item, 'click');
        // Not by an event of its own: the rows are others by then.
        if (!toggles && event.detail === 2) this.enter(item);
    }

    /** Goes where a link leads; opens or closes another set. */
    enter(item) {
        if (this.store.kind(item) === Kind.link && this.store.targetOf(item) >= 0) this.follow(item);
        else if (this.canOpen(item)) this.toggle(item);
        else this.choose(item, 'enter');
    }

    toggle(item) {
        this.open[item] = this.open[item] ? 0 : 1;
        if (!this.open[item] && this.chosen > item && this.chosen < this.store.end[item]) this.select(item, 'key');
        this.build();
    }

    select(item, how) {
        const other = item !== this.chosen;
        this.mark(item);
        if (other || how === 'click') this.choose(item, how);
    }

    /** Opens all that an item stands in, and chooses it. */
    show(item) {
        for (const each of this.store.chain(item).slice(0, -1)) this.open[each] = 1;
        this.open[0] = 1;
        this.build();
        this.mark(item);
    }

    mark(item) {
        this.chosen = item;
        this.sight.active = 'item-' + item;
        this.sight.reveal(this.rowOf(item));
    }

    /** Opens or closes all sets. */
    openAll(opens) {
        this.open.fill(opens ? 1 : 0);
        this.open[0] = 1;
        this.build();
        this.chooseVisible();
    }

    /** Chooses what the chosen item stands in, where it is not shown itself any more. */
    chooseVisible() {
        let item = this.chosen;
        while (this.rowOf(item) < 0) item = this.store.parent[item];
        this.select(item, 'key');
    }

    key(event) {
        if (event.ctrlKey || event.metaKey || event.altKey) return;
        const step = this.steps[event.key];
        if (step) {
            step.call(this, this.rowOf(this.chosen));
            event.preventDefault();
        } else if (event.key.length === 1 && event.key !== '/') {
            this.typeAhead(event.key);
            event.preventDefault();
        }
    }

    goToRow(row) {
        this.select(this.rows[Math.max(0, Math.min(row, this.rows.length - 1))], 'key');
    }

    steps = {
        ArrowDown: (row) => this.goToRow(row + 1),
        ArrowUp: (row) => this.goToRow(row - 1),
        PageDown: (row) => this.goToRow(row + this.sight.page),
        PageUp: (row) => this.goToRow(row - this.sight.page),
        Home: () => this.goToRow(0),
        End: () => this.goToRow(this.rows.length - 1),
        ArrowRight: (row) => {
            if (!this.canOpen(this.chosen)) return;
            if (this.open[this.chosen]) this.goToRow(row + 1);
            else this.toggle(this.chosen);
        },
        ArrowLeft: () => {
            if (this.open[this.chosen] && this.canOpen(this.chosen)) this.toggle(this.chosen);
            else if (this.chosen > 0) this.select(this.store.parent[this.chosen], 'key');
        },
        Enter: () => this.enter(this.chosen),
        ' ': () => (this.isTyping() ? this.typeAhead(' ') : this.enter(this.chosen)),
        '*': () => {
            const owner = this.store.parent[this.chosen];
            for (const item of owner < 0 ? [0] : this.store.children(owner)) this.open[item] = 1;
            this.build();
        },
    };

    isTyping() { return this.typed.text !== '' && Date.now() - this.typed.at < kTypeAhead; }

    /** Goes to the next row whose name begins with the letters that were typed without a pause. */
    typeAhead(letter) {
        const goesOn = this.isTyping() && this.typed.text !== letter.toLowerCase();
        this.typed = { text: (goesOn ? this.typed.text : '') + letter.toLowerCase(), at: Date.now() };
        const from = this.rowOf(this.chosen) + (goesOn ? 0 : 1);
        for (let i = 0; i < this.rows.length; ++i) {
            const row = (from + i) % this.rows.length;
            if (this.store.label(this.rows[row]).toLowerCase().startsWith(this.typed.text)) return this.goToRow(row);
        }
    }
}

/** The element for what an open set holds, made when there is something to put in. */
function groupOf(set) {
    if (!set.group) {
        set.group = make('ul', { role: 'group' });
        set.element.append(set.group);
    }
    return set.group;
}

const kIcons = { '-1': 'store', '-2': 'node', '-3': 'group', '-4': 'link', '-5': 'table', '-6': 'node' };

/** What a screen reader says of an item. */
function spoken(store, item) {
    const parts = [brief(store.label(item), 200) || 'without a name'];
    if (store.isSet(item)) parts.push(store.kindName(item));
    if (store.target(item)) parts.push('to ' + brief(store.target(item), 200));
    const line = seen(store.line(item, 100));
    if (line) parts.push(line + (store.unit(item) ? ' ' + store.unit(item) : ''));
    if (store.flags(item) & Flag.hidden) parts.push('hidden default');
    if (worst(store, item)) parts.push(worst(store, item) === 'no' ? 'does not conform' : 'with findings');
    return parts.join(', ');
}

/** The worst that is to be said of an item: a severity, "no" where it does not conform, or nothing. */
function worst(store, item) {
    const words = (store.findings.get(item) ?? []).map((index) => store.json.findings[index][1]);
    const fails = (store.conformance.get(item) ?? []).some(([, difference]) => difference !== '');
    return ['fatal', 'damage', 'stale'].find((word) => words.includes(word)) ?? (fails ? 'no' : words[0] ?? '');
}

/** The language of a text, for screen readers, where it is one. */
function languageOf(locale) {
    return /^[A-Za-z]{2,8}(-[A-Za-z0-9]{1,8})*$/.test(locale) ? locale : null;
}

/** One line: the mark of its kind, its name, its value with the unit. */
function drawItemLine(store, item) {
    const label = store.label(item);
    const name = store.name(item);
    const hidden = store.flags(item) & Flag.hidden ? ' is-hidden' : '';
    const worstOf = worst(store, item);
    return make('div', { class: 'line', 'data-item': item },
        make('span', { class: 'name' + (store.isSet(item) ? ' set' : '') + hidden },
            icon(kIcons[store.kind(item)] ?? 'value'),
            make('span', { class: 'label', lang: label === name ? null : languageOf(store.language) },
                brief(label, 200) || '\u00a0'),
            label === name ? null : make('span', { class: 'also' }, brief(name, 200)),
            worstOf ? make('span', { class: 'dot ' + worstOf }) : null),
        drawValue(store, item));
}

/** What is said of a set where a value would stand: where it leads, or how much it holds. */
function setLine(store, item) {
    const target = store.target(item);
    return target ? '\u2192 ' + brief(target, 200) : plural(store.size[item], 'item', 'items');
}

function drawValue(store, item) {
    const unit = store.unit(item);
    return make('span', { class: 'value' }, store.isSet(item) ? make('span', { class: 'count' }, setLine(store, item)) :
        make('span', { class: store.isText(item) ? 'string' : 'number' }, seen(store.line(item, 120))),
        unit ? make('span', { class: 'unit' }, unit) : null);
}
