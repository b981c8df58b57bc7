import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { accessible, row, shown } from './browser.mjs';
import { varied } from './data.mjs';

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
