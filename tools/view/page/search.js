
// The search: a list of what was found, which takes the place of the tree meanwhile.

const kSlice = 12;  // milliseconds of work before the page gets its turn

class Search {
    /**
     * `look(item)` is called for one that is marked, `choose(item)` for one that is taken, and `leave()` when none was,
     * though some were looked at.
     */
    constructor({ input, results, tree, status }, store, { look, choose, leave }) {
        Object.assign(this, { input, results, tree, status, store, look, choose, leave });
        this.hasLooked = false;
        this.found = [];
        this.at = -1;
        this.run = 0;
        this.tell();
        this.sight = new Sight(results, (first, last) => this.found.slice(first, last)
            .map((item, index) => this.drawFound(item, first + index)), input);
        input.addEventListener('input', () => this.begin());
        input.addEventListener('keydown', (event) => this.key(event));
        results.addEventListener('click', (event) => {
            const line = event.target.closest('.line');
            if (line) this.take(Number(line.dataset.item));
        });
    }

    /** Looks at all items, in slices, so that the page goes on answering. */
    begin() {
        const words = this.input.value.trim().toLowerCase();
        const run = ++this.run;
        this.found = [];
        this.at = -1;
        this.showsResults(words !== '');
        this.status.textContent = '';
        if (!words) return this.rest();
        let item = 0;
        let hidden = 0;
        const go = () => {
            if (run !== this.run) return;
            const end = performance.now() + kSlice;
            for (; item < this.store.count && performance.now() < end; ++item) {
                if (!this.store.haystack(item).includes(words)) continue;
                if (this.store.inSight[item]) this.found.push(item);
                else ++hidden;
            }
            this.mark(this.at);
            if (item < this.store.count) setTimeout(go);
            else this.tellFound(hidden);
        };
        go();
    }

    tellFound(hidden) {
        const more = hidden ? `, ${counted(hidden)} more among hidden defaults` : '';
        this.status.textContent = plural(this.found.length, 'item', 'items') + ' found' + more;
    }

    /** Nothing is looked for any more. */
    rest() {
        this.tell();
        if (this.hasLooked) this.leave();
        this.hasLooked = false;
    }

    /** What is said of the whole, as long as nothing is looked for. */
    tell() {
        this.status.textContent = plural(this.store.count - 1, 'item', 'items');
    }

    showsResults(shows) {
        this.results.hidden = !shows;
        this.tree.hidden = shows;
        this.input.setAttribute('aria-expanded', String(shows));
        this.sight.active = null;
        this.sight.tellActive();
    }

    drawFound(item, index) {
        const line = drawItemLine(this.store, item);
        const owner = this.store.parent[item];
        const place = brief(this.store.pathText(owner), 200);
        if (place) line.firstChild.append(make('span', { class: 'also' }, place));
        line.firstChild.style.paddingLeft = '12px';
        return make('li', {
            id: 'found-' + index, role: 'option', 'aria-selected': String(index === this.at),
            'aria-posinset': index + 1, 'aria-setsize': this.found.length,
            'aria-label': spoken(this.store, item) + (place ? ', in ' + place : ''),
        }, line);
    }

    /** Marks one of those that were found; -1 for none. */
    mark(index) {
        this.at = Math.max(-1, Math.min(index, this.found.length - 1));
        this.sight.active = this.at < 0 ? null : 'found-' + this.at;
        this.sight.show(this.found.length);
        if (this.at >= 0) this.sight.reveal(this.at);
    }

    lookAt(index) {
        this.mark(index);
        if (this.at < 0) return;
        this.hasLooked = true;
        this.look(this.found[this.at]);
    }

    take(item) {
        this.hasLooked = false;
        this.end();
        this.choose(item);
    }

    end() {
        this.input.value = '';
        this.begin();
        this.tree.focus();
    }

    key(event) {
        const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
        if (step) this.lookAt(Math.max(0, this.at + step));
        else if (event.key === 'Enter' && this.found.length) this.take(this.found[Math.max(0, this.at)]);
        else if (event.key === 'Escape') this.end();
        else return;
        event.preventDefault();
    }
}
