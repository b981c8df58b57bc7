
// Making elements, and long lists of them.

const kRowStep = 100;  // rows of a table that are shown at once
const kNamespace = 'http://www.w3.org/2000/svg';

/** Gives an element attributes (functions listen to the event of their name) and children. Texts become text. */
function furnish(element, attributes, children) {
    for (const [name, value] of Object.entries(attributes ?? {})) {
        if (typeof value === 'function') element.addEventListener(name, value);
        else if (value !== false && value !== null && value !== undefined) element.setAttribute(name, value);
    }
    // One by one: of some 100,000 the arguments of one call would be too many.
    for (const child of children.flat(Infinity)) {
        if (child !== null && child !== undefined && child !== '') element.append(child);
    }
    return element;
}

function make(tag, attributes, ...children) {
    return furnish(document.createElement(tag), attributes, children);
}

function draw(tag, attributes, ...children) {
    return furnish(document.createElementNS(kNamespace, tag), attributes, children);
}

function icon(name) {
    return draw('svg', { class: 'icon', 'aria-hidden': 'true' }, draw('use', { href: '#icon-' + name }));
}

/** Takes a button away. The focus goes to what it stood in, instead of to nowhere. */
function retire(button) {
    if (document.activeElement === button) button.closest('[tabindex]')?.focus({ preventScroll: true });
    button.remove();
}

/** Shows, of a list of any length, the rows in sight and some beside them: the number of elements stays small. */
class Sight {
    /**
     * `rows(first, last)` gives the elements of these rows, from the first one to before the last. `holder` has the
     * focus while they are gone through: it is told the element that is `active`, by its id.
     */
    constructor(frame, rows, holder = frame) {
        this.frame = frame;
        this.drawRows = rows;
        this.holder = holder;
        this.count = 0;
        this.active = null;
        this.body = make('ul', { class: 'rows', role: 'none' });
        this.space = make('div', { class: 'space', role: 'none' }, this.body);
        frame.append(this.space);
        frame.addEventListener('scroll', () => this.show(), { passive: true });
        new ResizeObserver(() => this.show()).observe(frame);
    }

    static kMargin = 8;
    static kTallest = 8e6;  // pixels: browsers end at some tens of millions

    get row() { return parseFloat(getComputedStyle(this.frame).getPropertyValue('--row')) || 24; }

    /** Pixels of the list to one of the scroll bar: more than 1 where the list is higher than a browser can scroll. */
    get scale() {
        const room = this.frame.clientHeight;
        const full = this.count * this.row;
        return full > Sight.kTallest ? (full - room) / (Sight.kTallest - room) : 1;
    }

    /** Draws what is in sight, of so many rows. */
    show(count = this.count) {
        this.count = count;
        const row = this.row;
        this.space.style.height = Math.min(count * row, Sight.kTallest) + 'px';
        const top = this.frame.scrollTop * this.scale;
        const first = Math.max(0, Math.min(count, Math.floor(top / row)) - Sight.kMargin);
        const last = Math.min(count, Math.ceil((top + this.frame.clientHeight) / row) + Sight.kMargin);
        this.body.style.transform = `translateY(${first * row - top + this.frame.scrollTop}px)`;
        this.body.replaceChildren(...this.drawRows(first, last));
        this.tellActive();
    }

    /** Names the active element as long as there is one: of a row that is scrolled out of sight there is none. */
    tellActive() {
        const isThere = this.active !== null && document.getElementById(this.active);
        if (isThere) this.holder.setAttribute('aria-activedescendant', this.active);
        else this.holder.removeAttribute('aria-activedescendant');
    }

    /** Scrolls so that a row is in sight, and draws. */
    reveal(index) {
        const row = this.row;
        const room = this.frame.clientHeight;
        const top = this.frame.scrollTop * this.scale;
        if (index * row < top) this.frame.scrollTop = index * row / this.scale;
        else if ((index + 1) * row > top + room) this.frame.scrollTop = ((index + 1) * row - room) / this.scale;
        this.show();
    }

    get page() { return Math.max(1, Math.floor(this.frame.clientHeight / this.row) - 1); }
}

/** Children made of the first of `items`, and a button for further ones: `step` at a time. */
function inSteps(parent, items, step, element, what) {
    let shown = 0;
    const button = make('button', { type: 'button', class: 'plain more', click: () => more() });
    const more = () => {
        const next = items.slice(shown, shown + step);
        parent.append(...next.map((item, index) => element(item, shown + index)));
        shown += next.length;
        const left = items.length - shown;
        button.textContent = `Show ${counted(Math.min(step, left))} more of ${counted(items.length)} ${what}`;
        if (left <= 0) retire(button);
    };
    more();
    return items.length > shown ? button : null;
}

/**
 * A table with these heads, `th` elements, and a row for each of `rows`, a part of them at a time: `cells(row, index)`
 * gives what stands in it.
 */
function drawTable(heads, rows, what, cells, attributes) {
    const body = make('tbody');
    const more = inSteps(body, rows, kRowStep, (row, index) => make('tr', {}, cells(row, index)), what);
    const head = heads.length ? make('thead', {}, make('tr', {}, heads)) : null;
    return [make('div', { class: 'grid' }, make('table', attributes, head, body)), more];
}

/** The head of a column; of numbers at its end. */
function drawHead(text, isNumber, ...more) {
    return make('th', { scope: 'col', class: isNumber ? 'end' : null }, text, ...more);
}

/** 0, 1, ... of so many. */
function places(count) {
    return Array.from({ length: Math.ceil(count) }, (_, i) => i);
}
