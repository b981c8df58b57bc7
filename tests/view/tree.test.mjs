import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { heading, row, rows, shown } from './browser.mjs';
import { Data, varied } from './data.mjs';

let page;
let complaints;
beforeEach(async () => ({ page, complaints } = await shown('varied', varied())));
afterEach(() => assert.deepEqual(complaints, []));

const chosen = () => page.locator('#tree [aria-selected="true"] > .line .label').textContent();

describe('the tree', () => {
    it('begins with what the root holds', async () => {
        assert.deepEqual(await rows(page), ['varied', 'Metals', 'Curves', 'Mechanical']);
        assert.equal(await heading(page), 'varied');
    });

    it('opens and closes by a click on the mark before a name', async () => {
        await row(page, 'Metals').locator('.twist').click();
        assert.deepEqual((await rows(page)).slice(1, 4), ['Metals', 'Steel', 'Brass']);
        await row(page, 'Metals').locator('.twist').click();
        assert.equal((await rows(page)).length, 4);
    });

    it('shows the item that is clicked at beside it', async () => {
        await row(page, 'Mechanical').click();
        assert.equal(await heading(page), 'Mechanical');
        assert.equal(await page.locator('#panel tbody tr').count(), 1);
    });

    it('shows values with their units', async () => {
        await page.click('#expand');
        assert.equal(await row(page, 'Density').locator('.value').innerText(), '7850\nKilogramPerCubicMeter');
        assert.equal(await row(page, 'Serial').locator('.value').textContent(), '9007199254740993');
        assert.equal(await row(page, 'Limits').locator('.value').textContent(), 'NaN, Infinity, -Infinity, 0');
        assert.equal(await row(page, 'Note').locator('.value').textContent(), 'plain\\nin two lines');
        assert.equal(await row(page, 'list').locator('.value').textContent(), '"one", "two", ""');
    });

    it('leads from a link to its target, by a double click and by the button', async () => {
        await page.click('#expand');
        await row(page, 'Favourite').dblclick();
        assert.equal(await heading(page), 'Steel');
        await row(page, 'Favourite').click();
        await page.click('#panel dd .go');
        assert.equal(await heading(page), 'Steel');
        assert.equal(await chosen(), 'Steel');
        await page.goBack();
        assert.equal(await heading(page), 'Favourite');
    });

    it('leads back to the link that was followed by a key', async () => {
        await page.locator('#tree').focus();
        for (const key of ['ArrowDown', 'Enter', 'ArrowDown', 'ArrowDown', 'ArrowDown']) await page.keyboard.press(key);
        assert.equal(await chosen(), 'Favourite');
        await page.keyboard.press('Enter');
        assert.equal(await chosen(), 'Steel');
        await page.goBack();
        assert.equal(await chosen(), 'Favourite');
        assert.equal(await heading(page), 'Favourite');
    });

    it('says that a target is no container', async () => {
        const data = new Data('targets');
        data.add(1, 'table', 'there');
        data.add(1, 'link', 'l', { target: 'there' });
        ({ page, complaints } = await shown('targets', data, { address: '#l' }));
        assert.equal(await page.locator('#panel dd').textContent(), 'there (no container there)');
    });

    it('shows names that differ in blanks, and in what has no shape, as different', async () => {
        const names = ['a b', 'a  b', 'a b ', 'a\nb', 'a\\nb', 'a\\\nb', 'a\u{e0041}b', 'a\u180eb', 'a\u3164b',
            'a\u115fb', 'a\u1160b', 'ab'];
        const data = new Data('alike');
        for (const name of names) data.add(1, 'string', name, { value: name });
        ({ page, complaints } = await shown('alike', data));
        const labels = (await rows(page)).slice(1);
        assert.deepEqual(labels, ['a b', 'a  b', 'a b ', 'a\\nb', 'a\\\\nb', 'a\\\\\\nb', 'a\\u{e0041}b', 'a\\u180eb',
            'a\\u3164b', 'a\\u115fb', 'a\\u1160b', 'ab']);
        assert.deepEqual(await page.locator('#tree .string').allTextContents(), labels);
        const width = (selector, index) => page.locator(selector).nth(index).evaluate((element) => {
            const range = document.createRange();
            range.selectNodeContents(element);
            return range.getBoundingClientRect().width;
        });
        for (const [selector, first] of [['#tree .label', 1], ['#tree .string', 0]]) {
            assert.ok(await width(selector, first) < await width(selector, first + 1), selector);
            assert.ok(await width(selector, first) < await width(selector, first + 2), selector);
        }
    });

    it('says that a target is not in the store', async () => {
        await page.click('#expand');
        await row(page, 'Nowhere').click();
        assert.match(await page.locator('#panel dd').textContent(), /Metals\.Gone \(not in this store\)/);
    });

    it('opens at the item that the address names', async () => {
        const other = await shown('varied', varied(), { address: '#Metals.Steel.Density' });
        assert.equal(await heading(other.page), 'Density');
        assert.deepEqual((await rows(other.page)).slice(0, 4), ['varied', 'Metals', 'Steel', 'Density']);
        assert.deepEqual(other.complaints, []);
    });
});

describe('the keys', () => {
    beforeEach(() => page.locator('#tree').focus());
    const press = async (...keys) => { for (const key of keys) await page.keyboard.press(key); };

    it('go down, up, to the end and back', async () => {
        await press('ArrowDown', 'ArrowDown');
        assert.equal(await chosen(), 'Curves');
        await press('ArrowUp');
        assert.equal(await chosen(), 'Metals');
        await press('End');
        assert.equal(await chosen(), 'Mechanical');
        await press('Home');
        assert.equal(await chosen(), 'varied');
    });

    it('open and enter to the right, leave and close to the left', async () => {
        await press('ArrowDown', 'ArrowRight');
        assert.equal(await chosen(), 'Metals');
        assert.equal((await rows(page)).length, 8);
        await press('ArrowRight');
        assert.equal(await chosen(), 'Steel');
        await press('ArrowLeft');
        assert.equal(await chosen(), 'Metals');
        await press('ArrowLeft');
        assert.equal((await rows(page)).length, 4);
    });

    it('follow a link by Enter, and open and close other sets', async () => {
        await press('ArrowDown', 'Enter', 'ArrowDown', 'ArrowDown', 'ArrowDown');
        assert.equal(await chosen(), 'Favourite');
        await press('Enter');
        assert.equal(await chosen(), 'Steel');
        await press('Enter');
        assert.equal(await page.locator('#tree [aria-selected="true"]').getAttribute('aria-expanded'), 'true');
    });

    it('open all beside an item by *', async () => {
        await press('ArrowDown', '*');
        assert.equal((await rows(page)).length, 4 + 4 + 12 + 1);
    });

    it('go to a name by its first letters', async () => {
        await press('m', 'e', 'c');
        assert.equal(await chosen(), 'Mechanical');
    });

    it('go on where the tree was closed above the chosen item', async () => {
        await press('ArrowDown', 'ArrowRight', 'ArrowDown');
        assert.equal(await chosen(), 'Steel');
        await page.click('#collapse');
        assert.equal(await chosen(), 'Metals');
    });

    it('go from tab to tab', async () => {
        await page.locator('#tab-item').focus();
        await press('ArrowRight', 'ArrowRight');
        assert.equal(await heading(page), 'Findings of the checker');
        assert.equal(await page.evaluate(() => document.activeElement.id), 'tab-findings');
    });
});

describe('the choices', () => {
    it('show names in a language, with the plain ones beside them', async () => {
        await page.click('#expand');
        await page.selectOption('#language', 'de-de');
        assert.deepEqual((await rows(page)).slice(1, 4), ['Alle Metalle', 'Stahl', 'Dichte']);
        assert.equal(await row(page, 'Stahl').locator('.also').textContent(), 'Steel');
        assert.equal(await row(page, 'Stahl').locator('.label').getAttribute('lang'), 'de-de');
        assert.ok((await rows(page)).includes('Brass'), 'what has no name in the language keeps its own');
        await page.selectOption('#language', '');
        assert.deepEqual((await rows(page)).slice(1, 3), ['Metals', 'Steel']);
    });

    it('show hidden defaults when asked for', async () => {
        await page.click('#expand');
        assert.ok(!(await rows(page)).includes('PoissonRatio'));
        assert.match(await row(page, 'Steel').locator('.value').textContent(), /4 items/);
        await page.check('#hidden');
        assert.ok((await rows(page)).includes('PoissonRatio'));
        assert.match(await row(page, 'Steel').locator('.value').textContent(), /5 items/);
        await row(page, 'PoissonRatio').click();
        await page.uncheck('#hidden');
        assert.equal(await chosen(), 'Steel');
    });

    it('turn light to dark and back', async () => {
        const colour = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
        const light = await colour();
        await page.click('#theme');
        assert.notEqual(await colour(), light);
        assert.equal(await page.getAttribute('#theme', 'aria-pressed'), 'true');
        await page.click('#theme');
        assert.equal(await colour(), light);
    });
});
