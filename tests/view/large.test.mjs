import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { heading, rows, shown } from './browser.mjs';
import { Data, large } from './data.mjs';

let page;
let complaints;
const elements = () => page.evaluate(() => document.querySelectorAll('*').length);
const kMost = 2500;

describe('a store of 100,000 items', () => {
    beforeEach(async () => ({ page, complaints } = await shown('large', large(100000))));
    afterEach(() => assert.deepEqual(complaints, []));

    it('is shown with few elements, whatever is open and wherever it is scrolled to', async () => {
        assert.ok(await elements() < kMost);
        await page.click('#expand');
        assert.ok(await elements() < kMost);
        const height = await page.evaluate(() => document.getElementById('tree').scrollHeight);
        assert.ok(height > 100000 * 20, 'all rows have their place');
        for (const part of [0.25, 0.5, 1]) {
            await page.evaluate((top) => { document.getElementById('tree').scrollTop = top; }, height * part);
            await page.evaluate(() => new Promise(requestAnimationFrame));
            assert.ok(await elements() < kMost);
            assert.ok((await rows(page)).length > 20);
        }
        assert.ok((await rows(page)).includes('needle'));
    });

    it('is gone through by keys to its end', async () => {
        await page.click('#expand');
        await page.locator('#tree').focus();
        await page.keyboard.press('End');
        assert.equal(await heading(page), 'needle');
        await page.keyboard.press('PageUp');
        assert.match(await heading(page), /^(property|node)/);
        assert.ok(await page.locator('#tree [aria-selected="true"]').isVisible());
    });

    it('is searched as a whole, with few elements for what is found', async () => {
        await page.fill('#search', 'haystack');
        await page.waitForFunction(() => document.getElementById('status').textContent === '1 item found');
        await page.fill('#search', 'property');
        await page.waitForFunction(() => /^7\d,\d{3} items found$/.test(document.getElementById('status').textContent));
        assert.ok(await elements() < kMost);
    });

    it('shows of a wide set a part at a time', async () => {
        await page.locator('#tree .line', { hasText: 'wide' }).click();
        assert.equal(await page.locator('#panel tbody tr').count(), 100);
        await page.click('.more');
        assert.equal(await page.locator('#panel tbody tr').count(), 200);
    });
});

describe('odd sizes', () => {
    afterEach(() => assert.deepEqual(complaints, []));

    it('a tree of 20,000 levels is opened, gone through and searched', async () => {
        const data = new Data('deep');
        for (let level = 1; level <= 20000; ++level) data.add(level, 'group', 'level' + level);
        ({ page, complaints } = await shown('deep', data));
        await page.click('#expand');
        await page.locator('#tree').focus();
        await page.keyboard.press('End');
        assert.equal(await heading(page), 'level20000');
        assert.ok(await elements() < kMost);
        await page.fill('#search', 'level19999');
        await page.waitForFunction(() => document.getElementById('status').textContent === '1 item found');
        await page.keyboard.press('Enter');
        assert.equal(await heading(page), 'level19999');
    });

    it('more rows than a browser can scroll are reached all the same', async () => {
        const data = new Data('endless');
        for (let i = 0; i < 400000; ++i) data.add(1, 'bool', 'b' + i, { value: true });
        ({ page, complaints } = await shown('endless', data));
        await page.locator('#tree').focus();
        await page.keyboard.press('End');
        assert.equal(await heading(page), 'b399999');
        assert.equal((await rows(page)).at(-1), 'b399999');
        await page.keyboard.press('ArrowUp');
        assert.equal(await heading(page), 'b399998');
        assert.ok(await page.locator('#tree [aria-selected="true"]').isVisible());
        await page.keyboard.press('Home');
        assert.equal((await rows(page))[0], 'endless');
    });

    it('an empty store is shown', async () => {
        ({ page, complaints } = await shown('empty', new Data('')));
        assert.equal(await page.locator('#title').textContent(), 'Store');
        assert.match(await page.locator('#panel').textContent(), /Nothing in it/);
        await page.locator('#tree').focus();
        for (const key of ['ArrowDown', 'ArrowRight', 'ArrowLeft', 'End', '*', 'Enter', 'x']) {
            await page.keyboard.press(key);
        }
    });
});
