
// The whole page, put together.

class Page {
    constructor(store) {
        const element = (id) => document.getElementById(id);
        this.store = store;
        this.title = element('title');
        this.panel = new Panel(element('tabs'), element('panel'), store);
        this.tree = new Tree(element('tree'), store, {
            choose: (item, how) => this.chosen(item, how),
            follow: (link) => this.go(store.targetOf(link)),
        });
        const [input, results, tree, status] = ['search', 'results', 'tree', 'status'].map(element);
        this.search = new Search({ input, results, tree, status }, store, {
            look: (item) => this.panel.showItem(item),
            choose: (item) => this.go(item),
            leave: () => this.panel.lookAt(this.tree.chosen),
        });
        this.language(element('language'), element('language-choice'));
        this.hidden(element('hidden'), element('hidden-choice'));
        this.theme(element('theme'));
        element('expand').addEventListener('click', () => this.tree.openAll(true));
        element('collapse').addEventListener('click', () => this.tree.openAll(false));
        document.addEventListener('click', (event) => this.click(event));
        document.addEventListener('keydown', (event) => this.key(event));
        window.addEventListener('popstate', () => this.fromAddress());
        this.name();
        this.fromAddress();
    }

    name() {
        this.title.textContent = brief(this.store.label(0), 100) || 'Store';
        document.title = this.title.textContent + ' \u2013 ' + seen(this.store.json.store);
    }

    /** An item was chosen in the tree. */
    chosen(item, how) {
        this.panel.showItem(item);
        if (how !== 'key') this.toAddress(item, false);
    }

    /** Leads to an item from anywhere: shows hidden defaults where it is one. */
    go(item, isNew = true) {
        // Keys do not write into the address where they lead: the way back begins at the item that is left.
        if (isNew) this.toAddress(this.tree.chosen, false);
        if (!this.store.inSight[item]) this.showHidden(true);
        if (!this.tree.frame.hidden) this.tree.show(item);
        else this.search.end(), this.tree.show(item);
        this.panel.showItem(item);
        if (isNew) this.toAddress(item, true);
    }

    /** The address of the page names the item, so that the way back leads to where one was. */
    toAddress(item, isNew) {
        const address = this.store.address(item);
        if (address.length > 2000) return;
        try {
            history[isNew ? 'pushState' : 'replaceState'](null, '', '#' + address);
        } catch {
            // A browser may refuse it; the page shows the item all the same.
        }
    }

    fromAddress() {
        const item = this.store.atAddress(location.hash.slice(1));
        this.go(item < 0 ? 0 : item, false);
    }

    click(event) {
        const go = event.target.closest('[data-go]');
        if (!go) return;
        this.go(Number(go.dataset.go));
        // What had the focus is gone.
        this.tree.frame.focus({ preventScroll: true });
    }

    key(event) {
        if (event.key !== '/' || event.ctrlKey || event.metaKey || event.altKey) return;
        if (document.activeElement === this.search.input) return;
        this.search.input.focus();
        this.search.input.select();
        event.preventDefault();
    }

    redraw() {
        this.tree.sight.show();
        if (!this.search.results.hidden) this.search.begin();
        this.panel.draw();
        this.name();
    }

    language(select, choice) {
        const languages = this.store.languages();
        choice.hidden = !languages.length;
        furnish(select, {}, [make('option', { value: '' }, 'as stored'),
            languages.map((locale) => make('option', { value: locale }, brief(locale, 40)))]);
        select.addEventListener('change', () => {
            this.store.language = select.value;
            this.redraw();
        });
    }

    hidden(box, choice) {
        this.hiddenBox = box;
        choice.hidden = !this.store.json.flags.some((flags) => flags & Flag.hidden);
        box.checked = false;
        box.addEventListener('change', () => this.showHidden(box.checked));
    }

    showHidden(shows) {
        this.hiddenBox.checked = shows;
        this.store.showsHidden = shows;
        this.store.place();
        this.tree.build();
        this.tree.chooseVisible();
        this.redraw();
    }

    theme(button) {
        const system = matchMedia('(prefers-color-scheme: dark)');
        const isDark = () => (document.documentElement.dataset.theme ?? (system.matches ? 'dark' : 'light')) === 'dark';
        const tell = () => button.setAttribute('aria-pressed', String(isDark()));
        button.addEventListener('click', () => {
            document.documentElement.dataset.theme = isDark() ? 'light' : 'dark';
            tell();
        });
        system.addEventListener('change', tell);
        tell();
    }
}

try {
    new Page(new Store(JSON.parse(document.getElementById('data').textContent)));
} catch (error) {
    document.getElementById('panel').textContent = 'The data in this page cannot be read: it was cut or changed, or ' +
        `is more than this browser takes, which may be 500 MB. (${brief(String(error), 200)})`;
}
