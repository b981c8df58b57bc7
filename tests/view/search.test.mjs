import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { heading, rows, shown } from './browser.mjs';
import { varied } from './data.mjs';

let page;
let complaints;
beforeEach(async () => ({ page, complaints } = await shown('varied', varied())));
afterEach(() => assert.deepEqual(complaints, []));

/** Types, and waits until all was looked at. */
async function search(text) {
    await page.keyboard.press('/');
    await page.keyboard.type(text);
    await page.waitForFunction(() => /found/.test(document.getElementById('status').textContent));
    return page.locator('#results .label').allTextContents();
}

describe('the search', () => {
    it('finds names, whatever the case', async () => {
        assert.deepEqual(await search('dENS'), ['Density', 'Density', 'Density']);
        assert.equal(await page.locator('#status').textContent(), '3 items found');
    });

    it('finds values', async () => assert.deepEqual(await search('7850'), ['Density']));
    it('finds single elements', async () => assert.deepEqual(await search('two'), ['Note', 'list']));
    it('finds names in every language', async () => assert.deepEqual(await search('stahl'), ['Steel']));
    it('finds targets of links', async () => assert.deepEqual(await search('metals.gone'), ['Nowhere']));

    it('finds schemas', async () => {
        assert.deepEqual(await search('thermal'), ['Steel']);
        await page.keyboard.press('Escape');
        assert.deepEqual(await search('pose'), ['poses']);
    });

    it('finds hidden defaults only where they are shown', async () => {
        assert.deepEqual(await search('poisson'), []);
        assert.equal(await page.locator('#status').textContent(), '0 items found, 1 more among hidden defaults');
        await page.check('#hidden');
        assert.deepEqual(await page.locator('#results .label').allTextContents(), ['PoissonRatio']);
        assert.equal(await page.locator('#status').textContent(), '1 item found');
    });

    it('chooses by the keys', async () => {
        await search('dens');
        await page.keyboard.press('ArrowDown');
        await page.keyboard.press('ArrowDown');
        assert.equal(await page.getAttribute('#search', 'aria-activedescendant'), 'found-1');
        assert.equal(await heading(page), 'Density');
        await page.keyboard.press('Enter');
        assert.deepEqual((await rows(page)).slice(0, 5), ['varied', 'Metals', 'Steel', 'Brass', 'Density']);
        assert.equal(await page.evaluate(() => document.activeElement.id), 'tree');
        assert.equal(await page.inputValue('#search'), '');
    });

    it('chooses by a click', async () => {
        await search('serial');
        await page.click('#results .line');
        assert.equal(await heading(page), 'Serial');
        assert.ok(await page.locator('#tree').isVisible());
    });

    it('ends by Escape', async () => {
        await search('dens');
        assert.ok(await page.locator('#tree').isHidden());
        await page.keyboard.press('Escape');
        assert.ok(await page.locator('#tree').isVisible());
        assert.equal(await page.locator('#status').textContent(), '28 items');
    });

    it('leaves beside the tree what was chosen before, where nothing was taken', async () => {
        await page.click('#tree .label:text-is("Curves")');
        await search('dens');
        await page.keyboard.press('ArrowDown');
        assert.equal(await heading(page), 'Density');
        await page.keyboard.press('Escape');
        assert.equal(await heading(page), 'Curves');

        await search('dens');
        await page.keyboard.press('ArrowDown');
        await page.click('#tab-findings');
        await page.fill('#search', '');
        assert.equal(await heading(page), 'Findings of the checker');
        await page.click('#tab-item');
        assert.equal(await heading(page), 'Curves');
    });

    it('takes a / in a text as one', async () => {
        await search('a/b');
        assert.equal(await page.inputValue('#search'), 'a/b');
    });
});
