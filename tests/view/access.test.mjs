import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { accessible, row, shown } from './browser.mjs';
import { Data, varied } from './data.mjs';

// What a screen reader is told.

let page;
let complaints;
beforeEach(async () => ({ page, complaints } = await shown('varied', varied())));
afterEach(() => assert.deepEqual(complaints, []));

const named = async (role) => (await accessible(page)).filter((node) => node.role === role).map((node) => node.name);

describe('a screen reader', () => {
    it('is told of the tree, its items, and how they stand', async () => {
        await row(page, 'Metals').locator('.twist').click();
        assert.deepEqual(await named('tree'), ['Items of the store']);
        const items = (await accessible(page)).filter((node) => node.role === 'treeitem');
        assert.deepEqual(items.map((node) => node.name), ['varied, store', 'Metals, group', 'Steel, node',
            'Brass, node, with findings', 'Favourite, link, to Metals.Steel', 'Nowhere, link, to Metals.Gone',
            'Curves, group', 'Mechanical, table']);
        assert.deepEqual(items.map((node) => node.level), [1, 2, 3, 3, 3, 3, 2, 2]);
        assert.deepEqual(items.map((node) => node.expanded),
            [true, true, false, false, undefined, undefined, false, false]);
        const places = await page.locator('#tree [role="treeitem"]').evaluateAll((all) =>
            all.map((item) => item.ariaPosInSet + '/' + item.ariaSetSize));
        assert.deepEqual(places, ['1/1', '1/3', '1/4', '2/4', '3/4', '4/4', '2/3', '3/3']);
    });

    it('finds what an open item holds in a group within it', async () => {
        await row(page, 'Metals').locator('.twist').click();
        const within = '[role="treeitem"] > [role="group"] > ';
        assert.equal(await page.locator(within + within + '[role="treeitem"]').count(), 4);
    });

    it('hears values with their units', async () => {
        await page.click('#expand');
        assert.ok((await named('treeitem')).includes('Density, 7850 KilogramPerCubicMeter'));
    });

    it('is told which item is chosen', async () => {
        await page.locator('#tree').focus();
        await page.keyboard.press('ArrowDown');
        const active = await page.getAttribute('#tree', 'aria-activedescendant');
        assert.equal(await page.locator('#' + active).getAttribute('aria-label'), 'Metals, group');
        const selected = (await accessible(page)).filter((node) => node.role === 'treeitem' && node.selected);
        assert.deepEqual(selected.map((node) => node.name), ['Metals, group']);
    });

    it('is told of no chosen item that is scrolled out of sight', async () => {
        const data = new Data('wide');
        for (let i = 0; i < 1000; ++i) data.add(1, 'int32', 'v' + i, { value: i });
        ({ page, complaints } = await shown('wide', data));
        const active = (id) => page.getAttribute(id, 'aria-activedescendant');
        const scroll = (id, top) => page.locator(id).evaluate((list, to) => {
            list.scrollTop = to;
            return new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
        }, top);
        await page.click('#tree .label:text-is("v19")');
        assert.equal(await active('#tree'), 'item-20');
        await scroll('#tree', 9000);
        assert.equal(await active('#tree'), null);
        await scroll('#tree', 0);
        assert.equal(await active('#tree'), 'item-20');

        await page.fill('#search', 'v');
        await page.keyboard.press('ArrowDown');
        assert.equal(await active('#search'), 'found-0');
        await scroll('#results', 9000);
        assert.equal(await active('#search'), null);
        await page.keyboard.press('Escape');
        assert.equal(await active('#search'), null);
        await page.waitForFunction(() => document.getElementById('tree').ariaActiveDescendantElement?.id === 'item-20');
    });

    it('hears how many were found', async () => {
        assert.equal(await page.getAttribute('#status', 'role'), 'status');
        await page.fill('#search', 'dens');
        await page.waitForFunction(() => document.getElementById('status').textContent === '3 items found');
        const options = await named('option');
        assert.ok(options.includes('Density, 7850 KilogramPerCubicMeter, in Metals.Steel'), options.join('\n'));
        assert.deepEqual(await named('listbox'), ['Found']);
    });

    it('is given a name for everything that can be used', async () => {
        const usable = ['button', 'checkbox', 'combobox', 'image', 'link', 'listbox', 'tab', 'tabpanel', 'tree'];
        for (const view of ['schemas', 'findings', 'about', 'item']) {
            await page.click('#tab-' + view);
            for (const node of await accessible(page)) {
                if (usable.includes(node.role)) assert.notEqual(node.name, '', node.role + ' without a name');
            }
        }
        assert.deepEqual(await named('tab'), ['Item', 'Schemas 1', 'Findings 1', 'About']);
    });

    it('reads a plot as a sentence', async () => {
        await page.click('#expand');
        await row(page, 'strain').click();
        assert.deepEqual(await named('image'), ['Plot of 250 values from 0 to 0.249']);
    });
});

describe('the focus', () => {
    const focused = () => page.evaluate(() => document.activeElement.id);

    it('goes to the tree with what a link in the panel leads to', async () => {
        await row(page, 'Metals').click();
        await page.locator('#panel .go', { hasText: 'Favourite' }).focus();
        await page.keyboard.press('Enter');
        assert.equal(await focused(), 'tree');
        await page.click('#tab-findings');
        await page.locator('#panel .go').first().focus();
        await page.keyboard.press('Enter');
        assert.equal(await focused(), 'tree');
    });

    it('stays in the panel where the button that had it goes', async () => {
        await page.click('#expand');
        await row(page, 'story').click();
        await page.locator('#panel .more').focus();
        await page.keyboard.press('Enter');
        assert.equal(await focused(), 'panel');
        await row(page, 'strain').click();
        await page.locator('#panel .more').focus();
        await page.keyboard.press('Enter');
        assert.equal(await page.evaluate(() => document.activeElement.className), 'plain more');
        await page.keyboard.press('Enter');
        assert.equal(await focused(), 'panel');
    });
});

describe('the colours', () => {
    /** The contrast of two colours as a browser tells them, from 1 to 21. */
    const contrast = (one, other) => {
        const light = (colour) => {
            const [r, g, b] = /(\d+), (\d+), (\d+)/.exec(colour).slice(1).map((part) => part / 255)
                .map((part) => (part <= 0.03928 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4));
            return 0.2126 * r + 0.7152 * g + 0.0722 * b + 0.05;
        };
        return Math.max(light(one) / light(other), light(other) / light(one));
    };
    const style = (selector, name) => page.locator(selector).first()
        .evaluate((element, property) => getComputedStyle(element)[property], name);

    for (const colorScheme of ['light', 'dark']) {
        it(`show in ${colorScheme} what is chosen, what can be used, and what is hidden`, async () => {
            ({ page, complaints } = await shown('varied', varied(), { colorScheme }));
            await page.check('#hidden');
            await page.click('#expand');
            await row(page, 'Steel').click();
            const back = await style('body', 'backgroundColor');
            assert.match(await style('#tree [aria-selected="true"] > .line', 'boxShadow'), /3px 0px 0px 0px inset/);
            const bar = await style('#tree [aria-selected="true"] > .line', 'boxShadow');
            assert.ok(contrast(bar, back) > 3, bar);
            for (const control of ['#search', '#language', '#theme', '#expand']) {
                for (const behind of [back, await style('.bar', 'backgroundColor')]) {
                    const edge = await style(control, 'borderTopColor');
                    assert.ok(contrast(edge, behind) > 3, control + ' ' + edge);
                }
            }
            await page.selectOption('#language', 'de-de');
            assert.equal(await style('.is-hidden', 'opacity'), '1');
            assert.ok(contrast(await style('.also', 'color'), back) > 4.5);
        });
    }

    it('of the system leave the chosen item and the marks to be seen', async () => {
        ({ page, complaints } = await shown('varied', varied(), { forcedColors: 'active' }));
        await page.click('#expand');
        await row(page, 'Brass').click();
        assert.equal(await style('#tree [aria-selected="true"] > .line', 'outlineStyle'), 'solid');
        assert.equal(await style('#tree [aria-selected="false"] > .line', 'outlineStyle'), 'none');
        assert.equal(await style('#tree .dot', 'borderTopStyle'), 'solid');
    });
});
